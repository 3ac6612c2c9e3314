#pragma once

#include "platform/dates/PosixZoneRule.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace caddis {

/// The history of a place's clock and the rule for its future, from a compiled time zone file (TZif, RFC
/// 8536).
class ZoneRules {
public:
    /// Nil: not such a file, or one that contradicts itself. Never reads outside `bytes`; memory is bounded
    /// by their number.
    static std::optional<ZoneRules> fromFile(std::span<const std::byte> bytes);

    /// A place whose clock has always followed one rule.
    static ZoneRules fromRule(const PosixZoneRule& rule);

    /// Seconds east of UTC at an instant, in seconds since 1970.
    int offsetAt(std::int64_t unixSeconds) const;

private:
    struct Transition {
        std::int64_t from; // the first second, since 1970, at which the offset holds
        int offset;
    };

    int m_initialOffset = 0; // before the first transition
    std::vector<Transition> m_transitions; // ascending
    std::optional<PosixZoneRule> m_future; // behind the last transition
};

} // namespace caddis
