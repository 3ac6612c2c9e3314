#include "platform/image/engine/Writers.h"

#include <gif_lib.h>
#include <memory>

namespace caddis::image {

namespace {

constexpr int MostColours = 256;

struct Indexed {
    std::unique_ptr<ColorMapObject, void (*)(ColorMapObject*)> colours {
        GifMakeMapObject(MostColours, nullptr), GifFreeMapObject
    };
    std::vector<GifByteType> indexes;
};

// The picture upon white in the 256 colours that fit it best.
bool index(const Bitmap& bitmap, Indexed& result)
{
    const std::size_t pixels = std::size_t { bitmap.pixelsWide } * bitmap.pixelsHigh;
    std::vector<GifByteType> planes[3];
    for (auto& plane : planes)
        plane.reserve(pixels);
    std::vector<std::uint8_t> row(std::size_t { bitmap.pixelsWide } * 3);
    for (std::size_t y = 0; y < bitmap.pixelsHigh; ++y) {
        opaqueRow(bitmap, y, row.data());
        for (std::size_t at = 0; at < row.size(); ++at)
            planes[at % 3].push_back(row[at]);
    }
    result.indexes.resize(pixels);
    int count = MostColours;
    return result.colours
        && GifQuantizeBuffer(bitmap.pixelsWide, bitmap.pixelsHigh, &count, planes[0].data(), planes[1].data(),
               planes[2].data(), result.indexes.data(), result.colours->Colors)
        == GIF_OK;
}

int append(GifFileType* gif, const GifByteType* bytes, int count)
{
    static_cast<std::string*>(gif->UserData)
        ->append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
    return count;
}

bool writeIndexed(GifFileType* gif, const Bitmap& bitmap, Indexed& picture)
{
    const int wide = static_cast<int>(bitmap.pixelsWide);
    const int high = static_cast<int>(bitmap.pixelsHigh);
    if (EGifPutScreenDesc(gif, wide, high, 8, 0, picture.colours.get()) != GIF_OK
        || EGifPutImageDesc(gif, 0, 0, wide, high, false, nullptr) != GIF_OK)
        return false;
    for (int y = 0; y < high; ++y)
        if (EGifPutLine(gif, &picture.indexes[static_cast<std::size_t>(y) * bitmap.pixelsWide], wide)
            != GIF_OK)
            return false;
    return true;
}

} // namespace

std::optional<Data> writeGIF(const Bitmap& bitmap, const WriteRequest&)
{
    constexpr std::uint32_t longest = 0xFFFF;
    Indexed picture;
    if (bitmap.pixelsWide > longest || bitmap.pixelsHigh > longest || !index(bitmap, picture))
        return std::nullopt;
    std::string file;
    GifFileType* const gif = EGifOpen(&file, append, nullptr);
    if (!gif)
        return std::nullopt;
    const bool isWritten = writeIndexed(gif, bitmap, picture);
    const bool isClosed = EGifCloseFile(gif, nullptr) == GIF_OK; // Writes the end.
    return isWritten && isClosed ? std::optional(Data::adopt(std::move(file))) : std::nullopt;
}

} // namespace caddis::image
