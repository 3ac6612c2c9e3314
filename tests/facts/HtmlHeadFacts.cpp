#include "facts/Facts.h"
#include "markup/HtmlBaseURL.h"
#include "markup/HtmlMetadata.h"
#include "markup/MarkupData.h"
#include "platform/files/FileSystem.h"

#include <map>

namespace caddis::facts {

Answer htmlHeadFact(const Question& question);

Answer htmlHeadFact(const Question& question)
{
    using Reader = std::optional<String> (*)(const String&);
    static const std::map<std::u16string_view, Reader> readers {
        { u"htmlTitle", htmlTitle },
        { u"htmlMetaTitle", htmlMetaTitle },
        { u"htmlMetaDescription", htmlMetaDescription },
        { u"htmlMetaKeywords", htmlMetaKeywords },
        { u"htmlMetaAuthor", htmlMetaAuthor },
        { u"htmlMetaCopyright", htmlMetaCopyright },
        { u"htmlMetaDate", htmlMetaDate },
        { u"htmlDate", htmlDate },
        { u"htmlCanonicalURL", htmlCanonicalURL },
    };
    const auto page = stringWithMarkupContentsOfFile(question.path, NSStringEncoding::UTF8);
    if (!page)
        return Answer::skip("no such file");
    if (question.key == u"htmlBaseURL") {
        const auto base = htmlBaseURL(page->text);
        return base ? std::optional(base->absoluteString()) : std::nullopt;
    }
    const auto reader = readers.find(question.key);
    return reader == readers.end() ? Answer::skip("no such key") : Answer(reader->second(page->text));
}

} // namespace caddis::facts
