#include "PictureOutput.h"

#include "Output.h"
#include "platform/image/ImageFiles.h"
#include "platform/image/ImageSource.h"

#include <cstdio>
#include <filesystem>

namespace caddis::tool {

namespace {

constexpr double JPEGQuality = 0.9;

BitmapImageFileType typeOf(const std::string& file)
{
    const std::string extension = std::filesystem::path(file).extension().string();
    if (extension == ".png" || extension == ".PNG")
        return BitmapImageFileType::PNG;
    if (extension == ".jpg" || extension == ".jpeg" || extension == ".JPG")
        return BitmapImageFileType::JPEG;
    return extension == ".bmp" ? BitmapImageFileType::BMP : BitmapImageFileType::TIFF;
}

bool isFolder(const std::string& file)
{
    std::error_code ignored;
    return file.ends_with('/') || std::filesystem::is_directory(file, ignored);
}

} // namespace

bool writePicture(const Bitmap& picture, const std::optional<std::string>& file)
{
    const auto data = representationOfBitmap(picture, typeOf(file.value_or("")), JPEGQuality);
    if (!data)
        std::fputs("the picture can't be written\n", stderr);
    return data && writeData(*data, file);
}

bool writePicture(const Data& tiff, const std::optional<std::string>& file)
{
    if (typeOf(file.value_or("")) == BitmapImageFileType::TIFF)
        return writeData(tiff, file);
    const auto source = ImageSource::createWithData(tiff);
    const auto picture = source ? source->imageAtIndex(0) : std::nullopt;
    return writePicture(picture.value_or(Bitmap()), file);
}

std::optional<std::string> pictureFile(const Invocation& invocation, const std::string& file)
{
    if (!invocation.output || !isFolder(*invocation.output))
        return invocation.output;
    std::error_code ignored;
    std::filesystem::create_directories(*invocation.output, ignored);
    const std::string name = std::filesystem::path(absolutePath(file).utf8()).filename().string();
    return (std::filesystem::path(*invocation.output) / (name + ".png")).string();
}

bool hasPlaceForAll(const Invocation& invocation)
{
    const bool has = invocation.arguments.size() == 1 || !invocation.output || isFolder(*invocation.output);
    if (!has)
        std::fputs("several pictures go into a folder: -o FOLDER/\n", stderr);
    return has;
}

} // namespace caddis::tool
