#pragma once

#include "platform/base/String.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// What can be told of a compiled script without running it.
///
/// The file is "FasdUAS ", a version twice ("1.101.10") and one object, big-endian throughout:
///
///     KIND(1) REFERENCE(2) SIZE(2) body
///
/// Most bodies are references to other objects; one that is negative, or that no object before had, is
/// followed by the object itself. The layout is known from independent readers of the format, not from any
/// document; docs/decisions.md says what is certain.
namespace caddis {

struct CompiledOutline {
    std::vector<String> handlers; ///< in the order of the file; events by their words: run, open
    std::vector<String> properties;
};

/// Nil for anything that is no compiled script, or is damaged. Time and memory are linear in the bytes.
std::optional<CompiledOutline> compiledOutline(std::span<const std::uint8_t> bytes);

} // namespace caddis
