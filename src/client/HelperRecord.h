#pragma once

#include "platform/base/Value.h"

#include <optional>

/// What became of a file that a helper was asked about.
namespace caddis {

enum class HelperOutcome {
    Ok,
    Partial, ///< some of the questions were answered, or an answer was cut at a limit
    Unsupported, ///< answered with nothing: an unknown kind, or nothing to be had from this file
    Encrypted,
    TimedOut,
    TooBig, ///< for the limit of a file's size, or for the helper's memory
    Crashed, ///< the helper ended: by a signal, or else by itself
    Refused, ///< not asked, or not allowed: no such file, no permission, no operation of the helper's profile
};

/// "ok", "partial", "unsupported", "encrypted", "timed out", "too big", "crashed", "refused".
std::u16string_view nameOf(HelperOutcome outcome);
/// Nil for another text.
std::optional<HelperOutcome> helperOutcomeNamed(std::u16string_view name);

/// Whether the file did this to a helper; such a failure is remembered.
bool isHarm(HelperOutcome outcome);

/// A file as it was at one moment.
struct FileState {
    std::uint64_t size = 0; ///< bytes; of a folder 0
    std::int64_t modified = 0; ///< nanoseconds since 1970

    friend bool operator==(const FileState&, const FileState&) = default;
};

/// Nil, with the reason, for what no helper can read: nothing there, no permission, a device or a pipe.
std::optional<FileState> stateOfFile(const String& path, String& whyNot);

struct HelperRecord {
    HelperOutcome outcome = HelperOutcome::Ok;
    String reason {}; ///< for a person; empty when all went well
    int signal = 0; ///< of a crash; 0: the helper ended in another way
    std::optional<FileState> state {}; ///< nil when the file can't be read
    unsigned attempts = 0; ///< requests sent, repetitions included; 0 when no helper was asked
    double seconds = 0; ///< from the first request to the last answer
    Dictionary answers {}; ///< under the questions' names; a question without an answer is not in it
};

} // namespace caddis
