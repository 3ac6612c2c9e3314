#pragma once

#include "platform/base/String.h"

#include <cstddef>
#include <optional>
#include <span>

namespace caddis {

/// What a helper is told on its command line; without a word it is the one helper of its user.
///
///     --name=NAME        registers NAME; has a scratch folder of its own for temporary files
///     --profile=reader   for documents of strangers: see platform/sandbox/Sandbox.h
///     --memory=BYTES     the most memory of its own that it may have
///     --attached=PID     is killed when the thread of process PID ends that has launched it
struct HelperOptions {
    enum class Profile { Base, Reader };

    /// Nil, logged, for a word that is none of these.
    static std::optional<HelperOptions> read(std::span<char* const> words);

    /// Only one that has a name to itself: what lies there is removed with it.
    bool hasScratchFolder() const { return hasOwnName; }

    String name;
    bool hasOwnName = false;
    Profile profile = Profile::Base;
    std::size_t memory = 0; ///< 0: what the machine can spare
    int launcher = 0; ///< its process; 0: not attached
};

} // namespace caddis
