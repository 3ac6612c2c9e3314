#pragma once

#include <linux/filter.h>
#include <vector>

namespace caddis {

/// A filter that refuses the system calls which Sandbox.h speaks of, by an error, and lets all others
/// through. A list of what is refused rather than of what is allowed: the libraries below us take up new
/// calls with every release.
std::vector<sock_filter> systemCallFilter();

} // namespace caddis
