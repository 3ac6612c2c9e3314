// The check of a plug-in's code before it is loaded.
//
// Invariants: what passes with a factory passes without one; a name that is nowhere in the file is never
// found.

#include "Fuzz.h"
#include "platform/plugin/ElfPreflight.h"

#include <array>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace caddis;
    const Data file = Data::copyOf({ reinterpret_cast<const char*>(data), size });
    const std::array<std::string, 1> present { "Factory" };
    const std::array<std::string, 1> absent { "NoFactoryHasThisName" };
    const bool isLoadable = preflightSharedObject(file, {}) == Preflight::Passed;
    const bool passes = preflightSharedObject(file, present) == Preflight::Passed;
    INVARIANT(isLoadable || !passes);
    INVARIANT(file.chars().find(absent[0]) != std::string_view::npos
        || preflightSharedObject(file, absent) != Preflight::Passed);
    return 0;
}
