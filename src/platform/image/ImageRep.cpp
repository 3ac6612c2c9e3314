#include "platform/image/ImageRep.h"

namespace caddis {

namespace {

struct SizeOf {
    Size operator()(const PICTImageRep& rep) const { return rep.picture.size(); }
    Size operator()(const IconImageRep& rep) const { return rep.picture.size(); }
    template <typename Rep> Size operator()(const Rep& rep) const { return rep.size(); }
};

} // namespace

const BitmapImageRep* pixelsOf(const ImageRep& rep)
{
    if (const auto* icon = std::get_if<IconImageRep>(&rep))
        return &icon->picture;
    return std::get_if<BitmapImageRep>(&rep);
}

Size sizeOf(const ImageRep& rep) { return std::visit(SizeOf(), rep); }

Size pixelSizeOf(const ImageRep& rep)
{
    const BitmapImageRep* const pixels = pixelsOf(rep);
    return pixels
        ? Size { static_cast<double>(pixels->pixelsWide()), static_cast<double>(pixels->pixelsHigh()) }
        : Size();
}

} // namespace caddis
