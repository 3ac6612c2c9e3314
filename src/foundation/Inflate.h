#pragma once

#include "platform/base/Data.h"

#include <optional>

namespace caddis {
inline namespace NSDataOstraExtensions {

/// The most bytes that dataByInflatingData gives.
inline constexpr std::size_t MostInflated = 64 << 20;

/// What a gzip or zlib stream holds. Nil: neither of them, damaged or cut, or more than MostInflated bytes.
std::optional<Data> dataByInflatingData(const Data& data);

} // namespace NSDataOstraExtensions
} // namespace caddis
