#include "platform/pdf/writer/ImageFilter.h"

#include "platform/image/AreaAverage.h"

#include <qpdf/Pl_Buffer.hh>
#include <qpdf/Pl_DCT.hh>
#include <qpdf/Pl_Flate.hh>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <stdexcept>

namespace caddis::pdf {

namespace {

// All pictures of a document unpacked, one after the other; what comes later stays as it is.
constexpr std::size_t MostBytes = std::size_t { 1 } << 30;
constexpr std::size_t MostBytesOfOne = std::size_t { 256 } << 20;
constexpr std::uint32_t BytesPerPixel = 4; // Of the rows that are averaged.

// Collects so many bytes and no more: a stream may inflate without end.
class Collector : public Pipeline {
public:
    Collector(std::string& out, std::size_t most)
        : Pipeline("collector", nullptr)
        , m_out(out)
        , m_most(most)
    {
    }
    void write(const unsigned char* bytes, std::size_t count) override
    {
        if (count > m_most - m_out.size())
            throw std::runtime_error("more bytes than the picture has samples");
        m_out.append(reinterpret_cast<const char*>(bytes), count);
    }
    void finish() override { }

private:
    std::string& m_out;
    std::size_t m_most;
};

struct Quality : Pl_DCT::CompressConfig {
    explicit Quality(double quality)
        : percent(static_cast<int>(std::lround(std::clamp(quality, 0.0, 1.0) * 100)))
    {
    }
    void apply(jpeg_compress_struct* jpeg) override { jpeg_set_quality(jpeg, percent, TRUE); }

    int percent;
};

// Samples of a pixel in spaces whose samples may be averaged; 0 for others.
std::uint32_t componentsOf(QPDFObjectHandle space)
{
    const bool isArray = space.isArray() && space.getArrayNItems() > 0;
    QPDFObjectHandle first = isArray ? space.getArrayItem(0) : space;
    const std::string family = first.isName() ? first.getName() : std::string();
    if (family == "/ICCBased" && space.getArrayNItems() > 1 && space.getArrayItem(1).isStream()) {
        auto number = space.getArrayItem(1).getDict().getKey("/N");
        return number.isInteger() ? number.getUIntValueAsUInt() : 0;
    }
    if (family == "/DeviceGray" || family == "/CalGray" || family == "/Separation")
        return 1;
    if (family == "/DeviceRGB" || family == "/CalRGB")
        return 3;
    return family == "/DeviceCMYK" ? 4 : 0;
}

std::uint32_t sideOf(QPDFObjectHandle dictionary, const char* key)
{
    auto value = dictionary.getKey(key);
    const long long side = value.isInteger() ? value.getIntValue() : 0;
    return side > 0 && side <= 65'500 ? static_cast<std::uint32_t>(side) : 0;
}

J_COLOR_SPACE jpegSpace(std::uint32_t components)
{
    return components == 1 ? JCS_GRAYSCALE : components == 3 ? JCS_RGB : JCS_CMYK;
}

} // namespace

ImageFilter::ImageFilter(const PDFImageSettings& settings)
    : m_settings(settings)
    , m_bytesLeft(MostBytes)
{
}

void ImageFilter::applyToAll(QPDF& document)
{
    if (m_settings.resolution > 0)
        m_placements.read(document);
    std::vector<QPDFObjectHandle> images;
    std::set<QPDFObjGen> masks;
    for (QPDFObjectHandle& object : document.getAllObjects()) {
        if (!object.isStream() || !object.getDict().getKey("/Subtype").isNameAndEquals("/Image"))
            continue;
        images.push_back(object);
        for (const char* key : { "/SMask", "/Mask" })
            masks.insert(object.getDict().getKey(key).getObjGen());
    }
    for (QPDFObjectHandle& image : images) {
        if (!masks.contains(image.getObjGen()))
            apply(image);
    }
}

std::optional<ImageFilter::Samples> ImageFilter::samplesOf(QPDFObjectHandle& image)
{
    QPDFObjectHandle dictionary = image.getDict();
    auto depth = dictionary.getKey("/BitsPerComponent");
    auto mask = dictionary.getKey("/SMask");
    const bool isMatte = mask.isStream() && mask.getDict().hasKey("/Matte");
    Samples samples { sideOf(dictionary, "/Width"), sideOf(dictionary, "/Height"),
        componentsOf(dictionary.getKey("/ColorSpace")), {} };
    const std::size_t size = std::size_t { samples.wide } * samples.high * samples.components;
    const std::uint32_t components = samples.components;
    if ((components != 1 && components != 3 && components != 4) || size == 0 || size > MostBytesOfOne
        || size > m_bytesLeft || !depth.isInteger() || depth.getIntValue() != 8 || isMatte
        || dictionary.getKey("/Mask").isArray())
        return std::nullopt;
    m_bytesLeft -= size;
    Collector collector(samples.bytes, size);
    const bool isUnpacked
        = image.pipeStreamData(&collector, nullptr, 0, qpdf_dl_all, true) && samples.bytes.size() == size;
    return isUnpacked ? std::optional(std::move(samples)) : std::nullopt;
}

double ImageFilter::factorFor(const Samples& samples, const QPDFObjGen& image) const
{
    const double longer = std::max(samples.wide, samples.high);
    if (longer <= m_settings.smallestSide)
        return 1;
    double factor = m_settings.scale > 0 ? m_settings.scale : 1;
    if (m_settings.largestSide > 0)
        factor = std::min(factor, m_settings.largestSide / longer);
    const auto placed = m_placements.largestSize(image);
    if (m_settings.resolution > 0 && placed)
        factor = std::min(factor,
            std::max(placed->width / samples.wide, placed->height / samples.high) / 72
                * m_settings.resolution);
    return factor;
}

ImageFilter::Samples ImageFilter::scaled(const Samples& samples, double factor) const
{
    const auto side = [&](std::uint32_t pixels) {
        return static_cast<std::uint32_t>(std::max(1L, std::lround(pixels * factor)));
    };
    Samples result { side(samples.wide), side(samples.high), samples.components, {} };
    const std::size_t row = std::size_t { samples.wide } * samples.components;
    const auto sampleAt = [&](std::uint32_t x, std::uint32_t y) {
        return samples.bytes.data() + y * row + std::size_t { x } * samples.components;
    };
    if (!m_settings.interpolates) {
        for (std::uint32_t y = 0; y < result.high; ++y)
            for (std::uint32_t x = 0; x < result.wide; ++x)
                result.bytes.append(
                    sampleAt(static_cast<std::uint32_t>(std::uint64_t { x } * samples.wide / result.wide),
                        static_cast<std::uint32_t>(std::uint64_t { y } * samples.high / result.high)),
                    samples.components);
        return result;
    }
    AreaAverage average(samples.wide, samples.high, result.wide, result.high);
    std::vector<std::uint8_t> pixels(std::size_t { samples.wide } * BytesPerPixel);
    for (std::uint32_t y = 0; y < samples.high; ++y) {
        for (std::uint32_t x = 0; x < samples.wide; ++x)
            std::memcpy(
                pixels.data() + std::size_t { x } * BytesPerPixel, sampleAt(x, y), samples.components);
        average.addRow(pixels.data());
    }
    const auto shrunk = average.take();
    for (std::size_t at = 0; at < shrunk.size(); at += BytesPerPixel)
        result.bytes.append(reinterpret_cast<const char*>(shrunk.data() + at), samples.components);
    return result;
}

std::string ImageFilter::packed(const Samples& samples) const
{
    Pl_Buffer buffer("packed");
    const auto* const bytes = reinterpret_cast<const unsigned char*>(samples.bytes.data());
    const auto pack = [&](Pipeline&& pipeline) {
        pipeline.write(bytes, samples.bytes.size());
        pipeline.finish();
    };
    if (m_settings.quality) {
        Quality quality(*m_settings.quality);
        pack(Pl_DCT("jpeg", &buffer, samples.wide, samples.high, static_cast<int>(samples.components),
            jpegSpace(samples.components), &quality));
    } else {
        pack(Pl_Flate("deflate", &buffer, Pl_Flate::a_deflate));
    }
    const auto result = buffer.getBufferSharedPointer();
    return { reinterpret_cast<const char*>(result->getBuffer()), result->getSize() };
}

void ImageFilter::apply(QPDFObjectHandle& image)
{
    const auto samples = samplesOf(image);
    if (!samples)
        return;
    const double factor = factorFor(*samples, image.getObjGen());
    const Samples result = factor < 1 ? scaled(*samples, factor) : *samples;
    const std::string bytes = packed(result);
    if (bytes.size() >= image.getRawStreamData()->getSize())
        return;
    QPDFObjectHandle dictionary = image.getDict();
    dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(result.wide));
    dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(result.high));
    image.replaceStreamData(bytes,
        QPDFObjectHandle::newName(m_settings.quality ? "/DCTDecode" : "/FlateDecode"),
        QPDFObjectHandle::newNull());
}

} // namespace caddis::pdf
