#pragma once

#include <cstdint>
#include <sys/types.h>

/// What the kernel says of helpers; 0 where it says nothing.
namespace caddis {

/// Bytes of memory that the process has, and the most that it has had. 0 also when it has ended.
std::uint64_t residentBytes(pid_t process);
std::uint64_t mostResidentBytes(pid_t process);

/// How many processes the kernel has killed for want of memory since it was started.
std::uint64_t kernelKills();

} // namespace caddis
