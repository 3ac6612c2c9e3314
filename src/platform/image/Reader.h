#pragma once

#include "platform/base/Value.h"
#include "platform/image/ImageTypes.h"
#include "platform/image/Limits.h"

#include <memory>
#include <optional>
#include <stdexcept>

/// What a codec is to the rest of the engine. A codec holds the bytes, answers questions about single
/// pictures and hands their rows on from the top. It may throw Broken, or whatever its library throws, at any
/// time.
namespace caddis::image {

/// The bytes can't be read on.
struct Broken : std::runtime_error {
    explicit Broken(const char* reason = "broken picture")
        : std::runtime_error(reason)
    {
    }
};

/// What the four bytes of a pixel are.
enum class PixelLayout {
    Opaque, ///< red, green, blue, anything
    Straight, ///< red, green, blue, alpha
    Premultiplied, ///< the same, colours multiplied by alpha
    InvertedCMYK, ///< 255 means no ink
};

/// The size at which the picture is wanted. A codec may hand on fewer pixels than there are, but not fewer
/// than these.
struct Target {
    std::uint32_t wide;
    std::uint32_t high;
};

class RowSink {
public:
    virtual ~RowSink() = default;
    /// Before the first row. Throws Broken when that is more than the limits allow.
    virtual void begin(std::uint32_t wide, std::uint32_t high, PixelLayout layout) = 0;
    virtual void row(const std::uint8_t* pixels) = 0;
};

class Reader {
public:
    virtual ~Reader() = default;

    virtual std::size_t count() { return 1; }
    virtual std::optional<ImageInfo> info(std::size_t index) = 0;
    virtual void decode(std::size_t index, Target target, RowSink& sink) = 0;
    /// The small picture that the file carries for this one, not upright; null when there is none.
    virtual std::unique_ptr<Reader> embedded(std::size_t /*index*/) { return nullptr; }
    /// The ICC profile of the colours that `decode` hands on; nil: sRGB.
    virtual std::optional<Data> profile(std::size_t /*index*/) { return std::nullopt; }
    /// What only this kind of file says: entries like "{GIF}".
    virtual Dictionary properties(std::size_t /*index*/) { return {}; }
};

using OpenReader = std::unique_ptr<Reader>(const Data& data);

} // namespace caddis::image
