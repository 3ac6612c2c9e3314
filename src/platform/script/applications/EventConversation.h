#pragma once

#include "platform/base/Data.h"

#include <chrono>
#include <optional>
#include <string>
#include <variant>

/// One question and its answer over a local socket: whoever asks connects, writes all of it, and shuts its
/// side down; whoever is asked reads to the end, writes the answer, and closes.
namespace caddis {

enum class ConversationFailure {
    NotListening, ///< nobody there, or somebody of another user
    TimedOut,
    Broken, ///< it hung up, or answered more than MaximumAnswer bytes
};

inline constexpr std::size_t MaximumAnswer = 64 << 20;

std::variant<Data, ConversationFailure> askOverSocket(
    const std::string& path, const Data& question, std::chrono::milliseconds deadline);

/// Whether somebody of this user listens.
bool isListening(const std::string& path);

} // namespace caddis
