#include "bundles/PlainText/FrontMatter.h"
#include "bundles/support/Importer.h"
#include "bundles/support/InputFile.h"
#include "bundles/support/TextSink.h"
#include "platform/unicode/PlainText.h"

namespace caddis::bundles {

bool importFile(Attributes& attributes, std::string_view contentType, const std::string& path)
{
    const auto bytes = readFile(path);
    if (!bytes)
        return false;
    const std::string text = plainTextOfData(*bytes).text.utf8();
    const bool isMarkdown = contentType == "net.daringfireball.markdown";
    TextSink(attributes).append(isMarkdown ? readFrontMatter(text, attributes) : std::string_view(text));
    return true;
}

} // namespace caddis::bundles
