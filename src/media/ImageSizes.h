#pragma once

#include "platform/image/Fit.h"

/// The rules for sizes of pictures.
namespace caddis {

inline namespace NSImageOstraExtensions {

/// The one rule for thumbnails: the image's size made to lie within the maximum, never larger.
inline Size thumb(Size maximum, Size forSize) { return fitted(maximum, forSize); }

/// Both sides multiplied and rounded down; the size itself unless the factor is above 0.
Size scaledSize(Size pixelSize, double factor);

struct PDFThumb {
    Size size;
    Rect fromRect; ///< what of the page is drawn, y upwards; the zero rectangle means all of it
};

/// The thumbnail of a page of `pixelSize`: a very tall page shows its top square.
PDFThumb PDFThumbSize(Size maximum, Size pixelSize, bool isPDFImage);

} // namespace NSImageOstraExtensions

} // namespace caddis
