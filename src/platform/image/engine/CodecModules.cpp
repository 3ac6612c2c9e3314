#include "platform/image/CodecModule.h"
#include "platform/image/engine/Metadata.h"
#include "platform/image/engine/Readers.h"
#include "platform/modules/Module.h"

namespace caddis::image {

namespace {

std::unique_ptr<Reader> opened(const Module& module, const Data& data)
{
    auto* const open = module.entry<OpenModuleReader>("caddisOpenReader");
    return std::unique_ptr<Reader>(open ? open(data) : nullptr);
}

const Module& metadataModule()
{
    static const Module module("caddis-image-metadata");
    return module;
}

} // namespace

Dictionary readMetadata(const Data& file)
{
    auto* const read = metadataModule().entry<ReadMetadata>("caddisReadMetadata");
    return read ? read(file) : Dictionary();
}

std::optional<RawPreviews> readRawPreviews(const Data& file)
{
    auto* const read = metadataModule().entry<ReadRawPreviews>("caddisReadRawPreviews");
    return read ? read(file) : std::nullopt;
}

std::unique_ptr<Reader> openHEIF(const Data& data)
{
    static const Module module("caddis-image-heif");
    return opened(module, data);
}

std::unique_ptr<Reader> openJPEG2000(const Data& data)
{
    static const Module module("caddis-image-jpeg2000");
    return opened(module, data);
}

std::unique_ptr<Reader> openJPEGXL(const Data& data)
{
    static const Module module("caddis-image-jpegxl");
    return opened(module, data);
}

std::unique_ptr<Reader> openPICT(const Data& data)
{
    static const Module module("caddis-image-pict");
    return opened(module, data);
}

std::unique_ptr<Reader> openSVG(const Data& data)
{
    static const Module module("caddis-image-svg");
    return opened(module, data);
}

} // namespace caddis::image
