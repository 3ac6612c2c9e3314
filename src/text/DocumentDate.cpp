#include "text/DocumentDate.h"

#include "platform/dates/TimeZone.h"
#include "text/CharacterTables.h"
#include "text/NumericValues.h"
#include "text/StringUtilities.h"

#include <algorithm>
#include <array>

namespace caddis {
inline namespace DateExtensions {

namespace {

using Text = std::u16string_view;

constexpr int FirstYear = 1950;
constexpr int LastYear = 2050;
constexpr int LongestMonth = 31;

struct MonthName {
    Text name;
    int month;
};

constexpr auto MonthNames = std::to_array<MonthName>({
    // clang-format off
    { u"January", 1 }, { u"Januar", 1 }, { u"Jan", 1 }, { u"February", 2 }, { u"Februar", 2 }, { u"Feb", 2 },
    { u"March", 3 }, { u"Maerz", 3 }, { u"März", 3 }, { u"Mar", 3 }, { u"April", 4 }, { u"Apr", 4 },
    { u"May", 5 }, { u"Mai", 5 }, { u"June", 6 }, { u"Juni", 6 }, { u"Jun", 6 }, { u"July", 7 }, { u"Juli", 7 },
    { u"Jul", 7 }, { u"August", 8 }, { u"Aug", 8 }, { u"September", 9 }, { u"Sep", 9 }, { u"October", 10 },
    { u"Oktober", 10 }, { u"Oct", 10 }, { u"November", 11 }, { u"Nov", 11 }, { u"December", 12 },
    { u"Dezember", 12 }, { u"Dec", 12 },
    // clang-format on
});

bool isNumber(Text word)
{
    return std::ranges::all_of(word, [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
}

// Scanners take an O for a zero.
bool isBeginningOf(Text name, Text word)
{
    return word.size() <= name.size()
        && std::ranges::equal(
            word, name.substr(0, word.size()), {},
            [](char16_t unit) { return toUpper(unit == u'0' ? u'O' : unit); }, toUpper);
}

int monthNamed(Text word)
{
    if (word.size() < 3)
        return 0;
    const auto found = std::ranges::find_if(
        MonthNames, [&](const MonthName& entry) { return isBeginningOf(entry.name, word); });
    return found == MonthNames.end() ? 0 : found->month;
}

int ordinalDay(Text word)
{
    if (word.size() < 3 || word.size() > 4)
        return 0;
    const char16_t ending[] = { toUpper(word[word.size() - 2]), toUpper(word.back()) };
    const Text upper(ending, 2);
    const int day = intValue(word);
    const bool ordinal = upper == u"ND" || upper == u"RD" || upper == u"ST" || upper == u"TH";
    return ordinal && day >= 1 && day <= LongestMonth ? day : 0;
}

// The run of date words collected so far.
class DateRun {
public:
    void addNumber(int number)
    {
        // A number too many: the run can only begin later.
        if (m_month && m_numbers == 1)
            clear();
        m_first = m_second;
        m_second = number;
        m_numbers = std::min(m_numbers + 1, 2);
    }
    void addMonth(int month)
    {
        m_numbers = m_month ? 0 : std::min(m_numbers, 1);
        m_month = month;
    }
    std::optional<Date> dateInYear(int year) const
    {
        CivilTime civil { .year = year, .month = m_month, .day = m_second };
        if (m_month ? m_numbers != 1 : m_numbers != 2)
            return std::nullopt;
        if (!m_month) {
            civil.day = m_first;
            civil.month = m_second;
            if (civil.month > 12)
                std::swap(civil.day, civil.month);
        }
        return civil.isValid() ? std::optional(TimeZone::defaultZone().date(civil)) : std::nullopt;
    }
    void clear() { *this = {}; }

private:
    int m_first = 0;
    int m_second = 0;
    int m_numbers = 0;
    int m_month = 0; // by name
};

// What a word says; a year outside the bounds says nothing.
struct WordMeaning {
    int number = 0;
    int year = 0;
    int month = 0;
};

WordMeaning meaningOf(Text word, std::size_t fewestDigits)
{
    if (isNumber(word)) {
        const int value = intValue(word);
        if (word.size() == 4 && value >= FirstYear && value <= LastYear)
            return { .year = value };
        if (word.size() <= 2 && word.size() >= fewestDigits && value >= 1 && value <= LongestMonth)
            return { .number = value };
    }
    if (const int month = monthNamed(word))
        return { .month = month };
    return { .number = ordinalDay(word) };
}

} // namespace

std::optional<Date> documentDateByValidatingSeparation(const String& text, bool validatingSeparation)
{
    const auto punctuation = validatingSeparation ? InnerPunctuation::Separates : InnerPunctuation::Joins;
    DateRun run;
    for (const String& word : wordsUsingSeparators(text, punctuation)) {
        const WordMeaning meaning = meaningOf(word, validatingSeparation ? 1 : 2);
        if (meaning.number) {
            run.addNumber(meaning.number);
        } else if (meaning.month) {
            run.addMonth(meaning.month);
        } else {
            if (const auto date = meaning.year ? run.dateInYear(meaning.year) : std::nullopt)
                return date;
            run.clear();
        }
    }
    return std::nullopt;
}

} // namespace DateExtensions
} // namespace caddis
