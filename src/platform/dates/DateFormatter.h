#pragma once

#include "platform/base/Date.h"

#include <optional>
#include <string>
#include <string_view>

namespace caddis {

/// Reads and writes dates by a Unicode date pattern (UTS 35). Reading is strict: the whole text must fit.
///
///     yyyy            a year of four digits
///     M d H m s       a number of one or two digits, however often the letter stands
///     Z               a zone: +0100, +01:00, GMT+01:00, GMT, Z or another name of a zone
///     'text'          stands as it is, like every unit that is no letter; '' is an apostrophe
///
/// What a pattern leaves out is 1 January, 00:00, in the default zone. A quoted 'Z' is mere text, so its
/// time is one of the default zone.
class DateFormatter {
public:
    explicit DateFormatter(std::u16string_view dateFormat)
        : m_dateFormat(dateFormat)
    {
    }

    /// What people read of a date and its time: "6 March 2023, 18:06".
    static const DateFormatter& dateTimeFormatter();

    /// The date in the default zone. Numbers have as many digits as their letter stands times, or more; MMMM
    /// is the month's English name, and Z writes nothing.
    String stringFromDate(Date date) const;

    /// Nil: the text does not fit, there is no such day or time, or the pattern has another letter or no
    /// year.
    std::optional<Date> dateFromString(std::u16string_view text) const;

private:
    std::u16string m_dateFormat;
};

} // namespace caddis
