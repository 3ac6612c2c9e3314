#pragma once

#include <cstddef>

/// Makes it safe to read a mapped file that somebody else may cut short.
///
/// Reading a page behind the new end of such a file raises SIGBUS, as does a medium that fails. A
/// process-wide handler, set when the first mapping is registered, puts a page of zeros in the place of the
/// missing one and lets the read go on: the reader sees damaged data, which it has to expect anyway. A fault
/// outside the registered mappings goes to the handler that was there before.
namespace caddis::FaultGuard {

/// The address must stay mapped until it is removed; any thread.
void add(const void* address, std::size_t size);
void remove(const void* address);
/// Whether the byte lies in a registered mapping.
bool contains(const void* address);

} // namespace caddis::FaultGuard
