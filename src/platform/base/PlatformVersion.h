#pragma once

#include <optional>
#include <tuple>

/// Some behaviour depends on the release of the platform. This system shows that of one recent release, and
/// what differs on older ones asks here.
namespace caddis {

/// The release of the Foundation library whose behaviour this system shows.
inline constexpr double FoundationVersion = 1856.105;

struct OperatingSystemVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;

    friend constexpr bool operator>=(const OperatingSystemVersion& left, const OperatingSystemVersion& right)
    {
        return std::tie(left.major, left.minor, left.patch)
            >= std::tie(right.major, right.minor, right.patch);
    }
};

struct PlatformVersion {
    double foundation = FoundationVersion;
    /// Nil on releases on which a process can't ask for it.
    std::optional<OperatingSystemVersion> operatingSystem = OperatingSystemVersion { 11, 6, 0 };

    /// The current one: that of this system, unless a test has set another.
    static const PlatformVersion& current() { return s_current; }
    bool isOperatingSystemAtLeastVersion(OperatingSystemVersion wanted) const
    {
        return operatingSystem && *operatingSystem >= wanted;
    }

private:
    friend class OtherPlatformVersion;
    static PlatformVersion s_current;
};

} // namespace caddis
