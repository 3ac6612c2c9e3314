#pragma once

#include "platform/base/PlatformVersion.h"

namespace caddis {

/// While it lives, the platform is of this release.
class OtherPlatformVersion {
public:
    explicit OtherPlatformVersion(double foundation, std::optional<OperatingSystemVersion> system = {})
        : m_previous(PlatformVersion::s_current)
    {
        PlatformVersion::s_current.foundation = foundation;
        PlatformVersion::s_current.operatingSystem = system;
    }
    ~OtherPlatformVersion() { PlatformVersion::s_current = m_previous; }
    OtherPlatformVersion(const OtherPlatformVersion&) = delete;
    OtherPlatformVersion& operator=(const OtherPlatformVersion&) = delete;

private:
    PlatformVersion m_previous;
};

} // namespace caddis
