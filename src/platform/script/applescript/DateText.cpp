#include "platform/script/applescript/DateText.h"

#include "platform/base/Format.h"
#include "platform/script/LongDateTime.h"

#include <array>
#include <vector>

namespace caddis::applescript {

namespace {

constexpr std::array<std::string_view, 12> MonthNames { "January", "February", "March", "April", "May",
    "June", "July", "August", "September", "October", "November", "December" };
constexpr std::array<std::string_view, 7> DayNames { "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday",
    "Friday", "Saturday" };

std::tm fieldsOf(std::int64_t date) { return calendarFields(date).value_or(std::tm {}); }

String twoDigits(int number) { return number < 10 ? format(u"0%d", number) : format(u"%d", number); }

bool sameIgnoringCase(std::string_view left, std::string_view right)
{
    return left.size() == right.size()
        && std::equal(left.begin(), left.end(), right.begin(),
            [](char first, char second) { return (first | 32) == (second | 32); });
}

// The index of the name that `word` is, or abbreviates by three letters or more.
template <std::size_t Count>
std::optional<int> indexOfName(const std::array<std::string_view, Count>& names, std::string_view word)
{
    for (std::size_t index = 0; index < Count; ++index) {
        if (word.size() >= 3 && word.size() <= names[index].size()
            && sameIgnoringCase(word, names[index].substr(0, word.size())))
            return static_cast<int>(index);
    }
    return std::nullopt;
}

// One number or word of a date's text, and the mark right behind it.
struct Part {
    std::string word; ///< empty for a number
    int number = 0;
    std::size_t digits = 0;
    char mark = ' ';
};

std::optional<std::vector<Part>> partsOf(const String& text)
{
    std::vector<Part> parts;
    const std::string bytes = text.utf8();
    for (std::size_t at = 0; at < bytes.size();) {
        const char character = bytes[at];
        Part part;
        if (character >= '0' && character <= '9') {
            for (; at < bytes.size() && bytes[at] >= '0' && bytes[at] <= '9' && part.digits < 8;
                 ++at, ++part.digits)
                part.number = part.number * 10 + (bytes[at] - '0');
        } else if ((character | 32) >= 'a' && (character | 32) <= 'z') {
            while (at < bytes.size() && (bytes[at] | 32) >= 'a' && (bytes[at] | 32) <= 'z')
                part.word += bytes[at++];
        } else if (std::string_view(" ,.\t").find(character) != std::string_view::npos) {
            ++at;
            continue;
        } else if (bytes.compare(at, 2, "\xC2\xA0") == 0 || bytes.compare(at, 3, "\xE2\x80\xAF") == 0) {
            at += bytes[at] == '\xC2' ? 2 : 3;
            continue;
        } else {
            return std::nullopt;
        }
        if (at < bytes.size() && std::string_view(":/-").find(bytes[at]) != std::string_view::npos)
            part.mark = bytes[at++];
        parts.push_back(std::move(part));
        if (parts.size() > 16)
            return std::nullopt;
    }
    return parts;
}

class DateReader {
public:
    explicit DateReader(std::int64_t now)
        : m_fields(fieldsOf(now))
    {
        m_fields.tm_hour = m_fields.tm_min = m_fields.tm_sec = 0;
    }

    std::optional<std::int64_t> read(const std::vector<Part>& parts)
    {
        for (m_at = 0; m_at < parts.size(); ++m_at) {
            const bool understood = parts[m_at].word.empty() ? number(parts) : word(parts[m_at].word);
            if (!understood)
                return std::nullopt;
        }
        if (!finish())
            return std::nullopt;
        return longDateTimeFromFields(m_fields);
    }

private:
    bool number(const std::vector<Part>& parts)
    {
        if (parts[m_at].mark == ':')
            return clock(parts);
        if ((parts[m_at].mark == '/' || parts[m_at].mark == '-') && m_at + 1 < parts.size()
            && parts[m_at + 1].word.empty() && m_numbers.empty())
            return numericDate(parts);
        m_numbers.push_back(parts[m_at]);
        return m_numbers.size() <= 3;
    }

    bool clock(const std::vector<Part>& parts)
    {
        m_fields.tm_hour = parts[m_at].number;
        int* const fields[] = { &m_fields.tm_min, &m_fields.tm_sec };
        for (int* field : fields) {
            if (parts[m_at].mark != ':' || m_at + 1 >= parts.size() || !parts[m_at + 1].word.empty())
                break;
            *field = parts[++m_at].number;
        }
        m_hasTime = true;
        return m_fields.tm_hour < 25 && m_fields.tm_min < 60 && m_fields.tm_sec < 61;
    }

    // Year first with four digits, else the month.
    bool numericDate(const std::vector<Part>& parts)
    {
        const Part& first = parts[m_at];
        if (m_at + 2 >= parts.size() || parts[m_at + 1].mark != first.mark || !parts[m_at + 2].word.empty())
            return false;
        const Part& second = parts[m_at + 1];
        const Part& third = parts[m_at + 2];
        m_at += 2;
        const bool yearFirst = first.digits >= 3;
        setYear(yearFirst ? first : third);
        m_month = (yearFirst ? second : first).number - 1;
        m_day = (yearFirst ? third : second).number;
        return *m_month >= 0 && *m_month < 12;
    }

    bool word(const std::string& word)
    {
        if (sameIgnoringCase(word, "am") || sameIgnoringCase(word, "pm"))
            return half(sameIgnoringCase(word, "pm"));
        if (sameIgnoringCase(word, "at") || sameIgnoringCase(word, "t") || sameIgnoringCase(word, "of"))
            return true;
        for (const std::string_view suffix : { "st", "nd", "rd", "th" }) {
            if (sameIgnoringCase(word, suffix))
                return true;
        }
        if (const auto month = indexOfName(MonthNames, word)) {
            m_month = month;
            return true;
        }
        return indexOfName(DayNames, word).has_value();
    }

    // "3 PM" has no minutes: the last plain number was the hour.
    bool half(bool afternoon)
    {
        if (!m_hasTime) {
            if (m_numbers.empty())
                return false;
            m_fields.tm_hour = m_numbers.back().number;
            m_numbers.pop_back();
            m_hasTime = true;
        }
        if (m_fields.tm_hour < 1 || m_fields.tm_hour > 12)
            return false;
        m_fields.tm_hour = m_fields.tm_hour % 12 + (afternoon ? 12 : 0);
        return true;
    }

    void setYear(const Part& part)
    {
        const int century = part.digits <= 2 ? (part.number < 50 ? 2000 : 1900) : 0;
        m_fields.tm_year = part.number + century - 1900;
    }

    bool finish()
    {
        if (!m_month && !m_hasTime)
            return false;
        for (const Part& part : m_numbers) {
            if (!m_day && part.digits <= 2)
                m_day = part.number;
            else
                setYear(part);
        }
        if (m_month)
            m_fields.tm_mon = *m_month;
        if (m_month || m_day)
            m_fields.tm_mday = m_day.value_or(1);
        return m_fields.tm_mday >= 1 && m_fields.tm_mday <= 31;
    }

    std::tm m_fields;
    std::size_t m_at = 0;
    std::vector<Part> m_numbers;
    std::optional<int> m_month;
    std::optional<int> m_day;
    bool m_hasTime = false;
};

} // namespace

String dateString(std::int64_t date)
{
    const std::tm fields = fieldsOf(date);
    return format(u"%s, %s %d, %d", DayNames[static_cast<std::size_t>(fields.tm_wday)],
        MonthNames[static_cast<std::size_t>(fields.tm_mon)], fields.tm_mday,
        std::int64_t { fields.tm_year } + 1900);
}

String shortDateString(std::int64_t date)
{
    const std::tm fields = fieldsOf(date);
    return format(
        u"%d/%d/%@", fields.tm_mon + 1, fields.tm_mday, twoDigits((fields.tm_year % 100 + 100) % 100));
}

String timeString(std::int64_t date)
{
    const std::tm fields = fieldsOf(date);
    const int hour = fields.tm_hour % 12 == 0 ? 12 : fields.tm_hour % 12;
    return format(u"%d:%@:%@ %s", hour, twoDigits(fields.tm_min), twoDigits(fields.tm_sec),
        fields.tm_hour < 12 ? "AM" : "PM");
}

String dateText(std::int64_t date) { return format(u"%@ at %@", dateString(date), timeString(date)); }

std::optional<std::int64_t> dateFromText(const String& text, std::int64_t now)
{
    const auto parts = partsOf(text);
    if (!parts || parts->empty())
        return std::nullopt;
    return DateReader(now).read(*parts);
}

std::int64_t currentDate() { return longDateTimeFromDate(Date::now()); }

} // namespace caddis::applescript
