#pragma once

#include "platform/dates/DateWords.h"
#include "platform/dates/TimeZone.h"

#include <array>
#include <optional>

namespace caddis {

/// What a date phrase has said so far, and the date that follows from it.
struct DatePhrase {
    struct Number {
        int value = 0;
        int digits = 0;
    };
    struct Clock {
        int hour = 0;
        int minute = 0;
        int second = 0;
    };

    std::optional<int> year, month, day;
    std::optional<Clock> clock;
    std::optional<int> meridiem; ///< 0 before noon, 12 after it
    std::optional<TimeZone> zone;
    std::optional<int> customaryOffset; ///< of the language's country, for a phrase without a zone
    int unknownWords = 0;

    void addNumber(Number number);
    void addWord(DateWord word);
    /// The first time said is the one that counts.
    void setClock(Clock said) { clock = clock.value_or(said); }
    /// Makes the last plain number the hour; false when it is none or the hour is known.
    bool takeNumberAsHour();

    /// Nil: no such day or time, or not enough said. `now` is the present instant.
    std::optional<Date> date(std::optional<Date> now);

private:
    static constexpr std::size_t MostNumbers = 4;

    bool placeNumbers();
    bool placeDayAndMonth(bool yearFirst);
    bool saysEnough() const;
    bool readTime(CivilTime& civil) const;
    std::optional<CivilTime> calendarDay(const CivilTime& today) const;
    std::optional<CivilTime> relativeDay(CivilTime today) const;
    std::int64_t daysToWeekday(std::int64_t days) const;
    void removeNumber(std::size_t index);

    // In order. Numbers beyond the fourth are dropped: four are already more than there are fields.
    std::array<Number, MostNumbers> m_numbers;
    std::size_t m_count = 0;

    std::optional<int> m_weekday;
    std::optional<int> m_dayShift;
    std::optional<int> m_direction;
    std::optional<int> m_unitDays, m_unitMonths;
    int m_unitCount = 1;
    bool m_monthNamed = false;
    bool m_now = false;
};

} // namespace caddis
