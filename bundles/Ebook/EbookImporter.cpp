#include "bundles/Ebook/Books.h"
#include "bundles/support/Importer.h"

namespace caddis::bundles {

bool importFile(Attributes& attributes, std::string_view contentType, const std::string& path)
{
    return contentType == "org.fictionbook.fb2" ? readFictionBook(attributes, path)
                                                : readMobiBook(attributes, path);
}

} // namespace caddis::bundles
