#pragma once

#include "platform/base/Value.h"
#include "platform/image/Bitmap.h"

#include <cstdint>

/// What movies answer with. Sizes are pixels of the picture as it is shown, without rotation; frames are
/// bitmaps.
namespace caddis {

/// A moment or a span as value / timescale seconds.
struct Time {
    std::int64_t value = 0;
    std::int32_t timescale = 0;
    bool isValid = false; ///< of no meaning otherwise

    /// The nearest moment below that the timescale can say; invalid for what is no finite number.
    static Time withSeconds(double seconds, std::int32_t timescale);
    static constexpr Time zero() { return { 0, 1, true }; }

    /// 0 when invalid.
    double seconds() const;

    friend constexpr bool operator==(const Time&, const Time&) = default;
};

/// One thing that a file says of itself, under the name that all containers share: "title", "artist",
/// "albumName", "artwork" (image data) …
struct MetadataItem {
    String commonKey;
    Value value;
};

} // namespace caddis
