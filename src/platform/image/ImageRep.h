#pragma once

#include "platform/image/BitmapImageRep.h"
#include "platform/image/EPSImageRep.h"

#include <variant>

/// The forms in which an image may stand in a file, each as it is there.
namespace caddis {

/// QuickDraw's pictures: a list of drawing commands, which are carried out when the picture is first drawn.
struct PICTImageRep {
    Data PICTRepresentation;
    BitmapImageRep picture; ///< what the commands draw
};

/// An icon of the desktop; not a picture of a document's.
struct IconImageRep {
    BitmapImageRep picture;
};

using ImageRep = std::variant<BitmapImageRep, PDFImageRep, EPSImageRep, PICTImageRep, IconImageRep>;

inline bool isBitmapRep(const ImageRep& rep) { return std::holds_alternative<BitmapImageRep>(rep); }

/// The bitmap of a bitmap or an icon; null for what is drawn by commands.
const BitmapImageRep* pixelsOf(const ImageRep& rep);

/// Points.
Size sizeOf(const ImageRep& rep);
/// 0 × 0 for what has no pixels of its own.
Size pixelSizeOf(const ImageRep& rep);

} // namespace caddis
