#include "platform/image/Metadata.h"

#include "platform/image/codecs/MetadataKeys.h"

#include <cmath>
#include <cstdio>
#include <exiv2/exiv2.hpp>
#include <memory>
#include <mutex>

namespace caddis::image {

namespace {

// Of one text or array; larger ones say nothing to anybody.
constexpr long MostBytes = 64 << 10;
constexpr long MostNumbers = 64;
constexpr std::uint32_t LeastThumbnail = 160;

void prepare()
{
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::XmpParser::initialize();
        Exiv2::enableBMFF(true);
    });
}

std::unique_ptr<Exiv2::Image> opened(const Data& file)
{
    prepare();
    std::unique_ptr<Exiv2::Image> image(
        Exiv2::ImageFactory::open(file.bytes(), static_cast<long>(file.size())).release());
    image->readMetadata();
    Exiv2::XmpProperties::unregisterNs(); // It keeps those of every file.
    return image;
}

bool isRational(const Exiv2::Value& value)
{
    return value.typeId() == Exiv2::unsignedRational || value.typeId() == Exiv2::signedRational;
}

// Texts are UTF-8, or what older writers meant by a byte.
Value text(std::string bytes)
{
    bytes.resize(std::string_view(bytes).find_last_not_of(std::string_view("\0 ", 2)) + 1);
    const auto found = String::fromStrictUtf8(bytes);
    return found ? *found : String::fromLatin1(bytes);
}

std::optional<Value> number(const Exiv2::Value& value, long index)
{
    if (!isRational(value))
        return Value(static_cast<std::int64_t>(value.toLong(index)));
    const Exiv2::Rational rational = value.toRational(index);
    // A 32-bit unsigned rational may exceed what toRational can hold.
    const double numerator = value.typeId() == Exiv2::unsignedRational
        ? static_cast<std::uint32_t>(rational.first)
        : rational.first;
    return rational.second ? std::optional(Value(numerator / rational.second)) : std::nullopt;
}

Value numbers(const Exiv2::Value& value)
{
    Array array;
    for (long index = 0; index < std::min(value.count(), MostNumbers); ++index)
        if (auto one = number(value, index))
            array.push_back(*std::move(one));
    return array;
}

Value version(const Exiv2::Value& value)
{
    Array digits;
    for (long index = 0; index < std::min(value.count(), MostNumbers); ++index) {
        const long digit = value.toLong(index) - '0';
        if (digit > 0 || !digits.empty())
            digits.emplace_back(static_cast<std::int64_t>(digit));
    }
    while (!digits.empty() && digits.back() == Value(0))
        digits.pop_back();
    return digits;
}

std::optional<Value> degrees(const Exiv2::Value& value)
{
    double sum = 0;
    double unit = 1;
    for (long index = 0; index < std::min(value.count(), 3L); ++index, unit *= 60) {
        const auto one = number(value, index);
        const double* const part = one ? one->as<double>() : nullptr;
        if (!part && index == 0)
            return std::nullopt;
        sum += part ? *part / unit : 0;
    }
    return value.count() > 0 ? std::optional(Value(sum)) : std::nullopt;
}

std::optional<Value> time(const Exiv2::Value& value)
{
    if (value.count() != 3)
        return std::nullopt;
    int parts[3] = {};
    for (long index = 0; index < 3; ++index) {
        const auto one = number(value, index);
        const double* const part = one ? one->as<double>() : nullptr;
        if (!part || !(*part >= 0) || *part > 99)
            return std::nullopt;
        parts[index] = static_cast<int>(*part);
    }
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", parts[0], parts[1], parts[2]);
    return Value(String::fromLatin1(text));
}

std::optional<Value> told(const Exiv2::Value& value, Form form)
{
    if (value.count() == 0 || value.size() > MostBytes)
        return std::nullopt;
    switch (form) {
    case Form::Text:
    case Form::Texts:
        if (const auto* comment = dynamic_cast<const Exiv2::CommentValue*>(&value))
            return text(comment->comment());
        return text(value.toString());
    case Form::Number:
        return number(value, 0);
    case Form::Numbers:
    case Form::Bytes:
        return numbers(value);
    case Form::Version:
        return version(value);
    case Form::Degrees:
        return degrees(value);
    case Form::Time:
        return time(value);
    }
    return std::nullopt;
}

template <typename AllData, typename Key>
std::optional<Value> valueOf(const AllData& all, const Key& key, Form form)
{
    const auto found = all.findKey(key);
    if (found == all.end())
        return std::nullopt;
    if (form != Form::Texts)
        return told(found->value(), form);
    Array texts;
    for (auto entry = found; entry != all.end(); ++entry)
        if (entry->key() == key.key())
            if (auto one = told(entry->value(), form))
                texts.push_back(*std::move(one));
    return Value(std::move(texts));
}

std::optional<Value> valueOf(const Exiv2::Image& image, const MetadataKey& key)
{
    if (std::string_view(key.key).starts_with("Iptc."))
        return valueOf(image.iptcData(), Exiv2::IptcKey(key.key), key.form);
    return valueOf(image.exifData(), Exiv2::ExifKey(key.key), key.form);
}

} // namespace

} // namespace caddis::image

using namespace caddis;
using namespace caddis::image;

extern "C" [[gnu::visibility("default")]] Dictionary caddisReadMetadata(const Data& file)
{
    const auto image = opened(file);
    Dictionary groups;
    for (const MetadataKey& key : metadataKeys) {
        const auto value = valueOf(*image, key);
        if (!value)
            continue;
        if (!groups.find(key.group))
            groups.set(String(key.group), Value(Dictionary()));
        groups.find(key.group)->as<Dictionary>()->set(String(key.name), *value);
    }
    return groups;
}

extern "C" [[gnu::visibility("default")]] std::optional<RawPreviews> caddisReadRawPreviews(const Data& file)
{
    const auto image = opened(file);
    const Exiv2::PreviewManager manager(*image);
    const auto dataOf = [&](const Exiv2::PreviewProperties& properties) {
        const Exiv2::PreviewImage preview = manager.getPreviewImage(properties);
        return Data::copyOf({ reinterpret_cast<const char*>(preview.pData()), preview.size() });
    };
    RawPreviews previews;
    for (const auto& properties : manager.getPreviewProperties()) { // From the smallest.
        if (properties.mimeType_ != "image/jpeg" && properties.mimeType_ != "image/tiff")
            continue;
        const bool isEnough = std::max(properties.width_, properties.height_) >= LeastThumbnail;
        if (isEnough && !previews.small)
            previews.small = dataOf(properties);
        previews.large = dataOf(properties);
    }
    if (previews.large.isEmpty())
        return std::nullopt;
    const auto orientation = image->exifData().findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    if (orientation != image->exifData().end())
        previews.orientation = static_cast<int>(orientation->toLong());
    return previews;
}
