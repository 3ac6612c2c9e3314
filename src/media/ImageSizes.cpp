#include "media/ImageSizes.h"

namespace caddis {

inline namespace NSImageOstraExtensions {

Size scaledSize(Size pixelSize, double factor)
{
    return factor > 0 ? Size { std::floor(pixelSize.width * factor), std::floor(pixelSize.height * factor) }
                      : pixelSize;
}

PDFThumb PDFThumbSize(Size maximum, Size pixelSize, bool isPDFImage)
{
    const Size whole = thumb(maximum, pixelSize);
    const bool isTall = pixelSize.width >= maximum.width && whole.height / whole.width > 2;
    if (!isPDFImage || !isTall)
        return { whole, {} };
    const double side = pixelSize.width;
    return { thumb(maximum, { side, side }), { 0, pixelSize.height - side, side, side } };
}

} // namespace NSImageOstraExtensions

} // namespace caddis
