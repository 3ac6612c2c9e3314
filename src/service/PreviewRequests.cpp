#include "service/PreviewRequests.h"

#include "platform/files/MappedFile.h"
#include "platform/pdf/PDFImageRep.h"
#include "platform/postscript/PostScript.h"

namespace caddis {

// FIXME: A folder that holds a PDF as its document (pdfd, lpdf) is a picture, too.
std::optional<Data> PDFImageRepOfFile(const std::optional<String>& path)
{
    const auto data = path ? MappedFile::open(*path) : std::nullopt;
    const auto pdf = data && isPostScript(*data) ? PDFWithPostScript(*data) : data;
    const auto rep = pdf ? PDFImageRep::imageRepWithData(*pdf) : std::nullopt;
    return rep ? std::optional(rep->PDFRepresentation()) : std::nullopt;
}

} // namespace caddis
