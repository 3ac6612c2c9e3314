#include "platform/files/MappedFile.h"
#include "platform/image/engine/FileSource.h"
#include "platform/image/engine/Writers.h"

// What the program looks up in caddis-image.so; everything else in it is hidden.

extern "C" [[gnu::visibility("default")]] caddis::image::Source* caddisOpenImage(const caddis::Data& data)
{
    return caddis::image::FileSource::open(data);
}

extern "C" [[gnu::visibility("default")]] caddis::image::Source* caddisOpenImageFile(
    const caddis::String& path)
{
    const auto data = caddis::MappedFile::open(path);
    return data ? caddis::image::FileSource::open(*data) : nullptr;
}

extern "C" [[gnu::visibility("default")]] bool caddisWriteImage(const caddis::Bitmap& bitmap,
    const caddis::image::WriteRequest& request, std::optional<caddis::Data>& out)
{
    out = caddis::image::writeImage(bitmap, request);
    return out.has_value();
}
