#pragma once

#include "platform/base/Data.h"
#include "platform/base/Descriptor.h"

#include <optional>

/// Bytes that travel as a file descriptor: written once into a sealed memory file, mapped by the receiver.
namespace caddis {

/// No data that crosses processes is larger, in bytes.
inline constexpr std::size_t MaximumSharedBytes = std::size_t(2) << 30;

/// Which descriptors a reader believes in.
enum class DescriptorTrust {
    /// Only memory files sealed against shrinking and writing. Everything else can change or vanish under
    /// the reader, or make it wait for ever.
    SealedOnly,
    /// Plain files too; they are copied, so that nobody can change them any more.
    PlainFiles,
};

/// A memory file with these bytes, sealed. Not open when the system has no room for another one.
Descriptor sealedCopyOf(std::span<const std::uint8_t> bytes);

/// The contents of an untrusted descriptor; nil when `trust` refuses it, when it cannot be read, or when it
/// holds more than MaximumSharedBytes.
std::optional<Data> contentsOf(const Descriptor& descriptor, DescriptorTrust trust);

} // namespace caddis
