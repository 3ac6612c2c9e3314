#pragma once

#include "platform/base/Data.h"

#include <span>
#include <string>

namespace caddis {

/// The platform's numbers for what can be wrong with a bundle's code.
enum class Preflight {
    Passed = 0,
    NoSuchFile = 4,
    NotLoadable = 3584, ///< no shared object, or a damaged one; also a program
    WrongArchitecture = 3585,
    MissingSymbol = 3588,
};

/// Whether the bytes are a shared object for this machine that defines all `symbols`. No code of it runs:
/// the ELF tables alone are read, and nothing in them is believed before it is checked.
Preflight preflightSharedObject(const Data& file, std::span<const std::string> symbols);

} // namespace caddis
