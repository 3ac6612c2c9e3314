#pragma once

#include "platform/base/Date.h"
#include "platform/dates/TimeZone.h"

#include <optional>
#include <string>
#include <utility>

namespace caddis {

/// "2001-01-01 00:00:00" in UTC, or "nil".
inline std::string inUTC(const std::optional<Date>& date)
{
    return date ? date->description().utf8().substr(0, 19) : "nil";
}

/// Makes texts without a zone be read in another one while it lives.
class DefaultZone {
public:
    explicit DefaultZone(TimeZone zone)
        : m_previous(TimeZone::defaultZone())
    {
        TimeZone::setDefaultZone(std::move(zone));
    }
    ~DefaultZone() { TimeZone::setDefaultZone(std::move(m_previous)); }
    DefaultZone(const DefaultZone&) = delete;
    DefaultZone& operator=(const DefaultZone&) = delete;

private:
    TimeZone m_previous;
};

} // namespace caddis
