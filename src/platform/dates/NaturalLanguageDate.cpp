// A phrase is read in one pass: each word and number is put down as what it is (DatePhrase), and only at the
// end are plain numbers given their places, and what is missing is filled in.

#include "platform/dates/NaturalLanguageDate.h"

#include "platform/dates/DateCursor.h"
#include "platform/dates/DatePhrase.h"
#include "platform/dates/DateWords.h"
#include "platform/dates/IsoDate.h"

namespace caddis {

namespace {

constexpr int LongestNumber = 4;
constexpr std::size_t LongestZoneName = 64;
constexpr int KoreanOffset = 9 * 3600;
constexpr std::u16string_view DefaultDayAndMonth = u" 1 1";

// Han, Hangul and every letter beyond ASCII; punctuation and blanks of Latin-1, U+2000 and U+3000 are not.
constexpr bool isWordUnit(char16_t unit)
{
    return isAsciiLetter(unit)
        || (unit >= 0xC0 && !(unit >= 0x2000 && unit < 0x2070) && !(unit >= 0x3000 && unit < 0x3004));
}

constexpr bool isZoneNameUnit(char16_t unit)
{
    return isAsciiLetter(unit) || isAsciiDigit(unit) || unit == u'/' || unit == u'_' || unit == u'-'
        || unit == u'+';
}

constexpr bool isHangul(char16_t unit) { return unit >= 0xAC00 && unit <= 0xD7A3; }

class PhraseReader {
public:
    PhraseReader(std::u16string_view text, DatePhrase& phrase)
        : m_text(text)
        , m_phrase(phrase)
    {
    }

    void read()
    {
        while (!m_text.atEnd()) {
            if (isAsciiDigit(m_text.peek()))
                readDigits();
            else if (isWordUnit(m_text.peek()))
                readWord();
            else if (m_previous != Previous::Time || !readZoneOffset())
                skipMark();
        }
    }

private:
    void readDigits();
    void readClock(int hour);
    bool readMarkedNumber(int value);
    void readWord();
    void skipMark();
    bool readDottedMeridiem();
    void addMeridiem(int hours);
    bool readZoneOffset();
    bool readZoneName();

    DateCursor m_text;
    DatePhrase& m_phrase;
    // What stands before, blanks aside; a zone or AM or PM belongs to the time.
    enum class Previous { Other, Number, Time } m_previous = Previous::Other;
    bool m_zoneNameTried = false;
};

void PhraseReader::readDigits()
{
    DateCursor ahead = m_text;
    const auto digits = ahead.run(isAsciiDigit);
    m_previous = Previous::Other;
    if (digits.size() > LongestNumber) {
        m_text = ahead;
        ++m_phrase.unknownWords;
        return;
    }
    const int value = m_text.number(1, LongestNumber).value_or(0);
    if (m_text.peek() == u':' && isAsciiDigit(m_text.peek(1))) {
        readClock(value);
    } else if (!readMarkedNumber(value)) {
        m_phrase.addNumber({ value, static_cast<int>(digits.size()) });
        m_previous = Previous::Number;
    }
}

void PhraseReader::readClock(int hour)
{
    DatePhrase::Clock clock { .hour = hour };
    m_text.skip(1);
    clock.minute = m_text.number(1, 2).value_or(0);
    if (m_text.peek() == u':' && isAsciiDigit(m_text.peek(1))) {
        m_text.skip(1);
        clock.second = m_text.number(1, 2).value_or(0);
        if (m_text.peek() == u'.' || m_text.peek() == u',') {
            m_text.skip(1);
            m_text.run(isAsciiDigit);
        }
    }
    if (isAsciiDigit(m_text.peek()))
        ++m_phrase.unknownWords;
    m_phrase.setClock(clock);
    m_previous = Previous::Time;
}

// 2004년 05월 28일, 2004年5月28日.
bool PhraseReader::readMarkedNumber(int value)
{
    const char16_t mark = m_text.peek();
    if (mark == u'년' || mark == u'年')
        m_phrase.year = value;
    else if (mark == u'월' || mark == u'月')
        m_phrase.month = value;
    else if (mark == u'일' || mark == u'日')
        m_phrase.day = value;
    else
        return false;
    m_text.skip(1);
    if (isHangul(mark))
        m_phrase.customaryOffset = KoreanOffset;
    return true;
}

void PhraseReader::readWord()
{
    if (readZoneName() || readDottedMeridiem())
        return;
    const auto word = m_text.run(isWordUnit);
    // Behind a time "AT" is Atlantic time.
    const DateWord meaning = m_previous == Previous::Time && word == u"AT"
        ? DateWord { DateWord::Kind::Zone, offsetOfAbbreviation(word).value_or(0) }
        : meaningOfDateWord(word);
    if (meaning.kind == DateWord::Kind::Meridiem && !isAsciiLetter(word[0])) {
        // Korean, Chinese and Japanese put it before the time.
        m_phrase.meridiem = meaning.value;
        if (isHangul(word[0]))
            m_phrase.customaryOffset = KoreanOffset;
    } else if (meaning.kind == DateWord::Kind::Meridiem) {
        addMeridiem(meaning.value);
    } else {
        m_phrase.addWord(meaning);
        m_previous = meaning.kind == DateWord::Kind::Zone ? Previous::Time : Previous::Other;
    }
}

bool PhraseReader::readDottedMeridiem()
{
    const char16_t letter = m_text.peek() | 32;
    if ((letter != u'a' && letter != u'p') || m_text.peek(1) != u'.' || (m_text.peek(2) | 32) != u'm')
        return false;
    m_text.skip(3);
    addMeridiem(letter == u'p' ? 12 : 0);
    return true;
}

// "3pm": a plain number before it is the hour. Elsewhere it says nothing: "am" is a German preposition.
void PhraseReader::addMeridiem(int hours)
{
    const bool behindHour
        = m_previous == Previous::Time || (m_previous == Previous::Number && m_phrase.takeNumberAsHour());
    if (behindHour)
        m_phrase.meridiem = hours;
    m_previous = behindHour ? Previous::Time : Previous::Other;
}

void PhraseReader::skipMark()
{
    if (!isBlank(m_text.peek()))
        m_previous = Previous::Other;
    m_text.skip(1);
}

bool PhraseReader::readZoneOffset()
{
    const auto offset = readOffset(m_text);
    if (!offset)
        return false;
    m_phrase.zone = TimeZone(*offset);
    m_previous = Previous::Other;
    return true;
}

// "Europe/Berlin" behind a time; tried only once, since it opens a file.
bool PhraseReader::readZoneName()
{
    if (m_previous != Previous::Time || m_zoneNameTried)
        return false;
    const auto name = DateCursor(m_text.rest().substr(0, LongestZoneName + 1)).run(isZoneNameUnit);
    if (name.size() > LongestZoneName || name.find(u'/') == name.npos)
        return false;
    m_zoneNameTried = true;
    m_phrase.zone = TimeZone::inDatabase(name);
    if (!m_phrase.zone)
        return false;
    m_text.skip(name.size());
    m_previous = Previous::Other;
    return true;
}

} // namespace

std::optional<Date> dateWithNaturalLanguageString(std::u16string_view text, std::optional<Date> now)
{
    if (text.ends_with(DefaultDayAndMonth))
        text.remove_suffix(DefaultDayAndMonth.size());
    if (const auto date = readIsoDate(text))
        return date;
    DatePhrase phrase;
    PhraseReader(text, phrase).read();
    return phrase.date(now);
}

} // namespace caddis
