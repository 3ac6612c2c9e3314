#include "platform/script/applescript/TextComparison.h"

#include "platform/unicode/Collation.h"

#include <algorithm>
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

namespace caddis::applescript {

namespace {

thread_local unsigned attributesOfThread = DefaultAttributes;

bool considers(unsigned attribute) { return (attributesOfThread & attribute) != 0; }

bool isAscii(std::u16string_view text)
{
    return std::ranges::all_of(text, [](char16_t unit) { return unit < 0x80; });
}

bool isHyphen(char16_t unit)
{
    return unit == u'-' || unit == u'\u00AD' || (unit >= 0x2010 && unit <= 0x2015);
}

bool isIgnored(char16_t unit)
{
    if (!considers(ConsiderHyphens) && isHyphen(unit))
        return true;
    if (!considers(ConsiderPunctuation) && u_ispunct(unit) && !isHyphen(unit))
        return true;
    return !considers(ConsiderWhiteSpace) && u_isUWhiteSpace(unit);
}

// Case and accents of one character; appends what is left of it.
void appendFolded(std::u16string& out, UChar32 character)
{
    if (character < 0x80) {
        const auto unit = static_cast<char16_t>(character);
        if (isIgnored(unit))
            return;
        out += considers(ConsiderCase) || unit < u'A' || unit > u'Z' ? unit
                                                                     : static_cast<char16_t>(unit + 32);
        return;
    }
    UErrorCode status = U_ZERO_ERROR;
    char16_t decomposed[24];
    const UNormalizer2* normalizer = unorm2_getNFDInstance(&status);
    int32_t length = unorm2_getDecomposition(normalizer, character, decomposed, 24, &status);
    if (length < 0 || U_FAILURE(status)) {
        length = 0;
        U16_APPEND_UNSAFE(decomposed, length, character);
    }
    for (int32_t index = 0; index < length;) {
        UChar32 part = 0;
        U16_NEXT(decomposed, index, length, part);
        if (!considers(ConsiderDiacriticals) && u_charType(part) == U_NON_SPACING_MARK)
            continue;
        if (part < 0x10000 && isIgnored(static_cast<char16_t>(part)))
            continue;
        if (!considers(ConsiderCase))
            part = u_foldCase(part, U_FOLD_CASE_DEFAULT);
        char16_t units[2];
        int32_t count = 0;
        U16_APPEND_UNSAFE(units, count, part);
        out.append(units, static_cast<std::size_t>(count));
    }
}

std::u16string folded(std::u16string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t index = 0; index < text.size();) {
        UChar32 character = 0;
        U16_NEXT(text.data(), index, text.size(), character);
        appendFolded(out, character);
    }
    return out;
}

} // namespace

unsigned& currentAttributes() { return attributesOfThread; }

bool textsAreEqual(const String& left, const String& right)
{
    if (left == right)
        return true;
    const bool lengthTells = (attributesOfThread & ~ConsiderCase) == (DefaultAttributes & ~ConsiderCase);
    if (lengthTells && left.length() != right.length() && isAscii(left) && isAscii(right))
        return false;
    return considers(ConsiderNumericStrings) ? compareTexts(left, right) == 0 : folded(left) == folded(right);
}

int compareTexts(const String& left, const String& right)
{
    const std::u16string first = folded(left);
    const std::u16string second = folded(right);
    if (first == second)
        return 0;
    if (considers(ConsiderNumericStrings))
        return collate(first, second, DigitOrder::ByValue);
    const int order = collate(first, second, DigitOrder::ByCharacter);
    return order != 0 ? order : first.compare(second);
}

bool textContains(const String& text, const String& part)
{
    return folded(text).find(folded(part)) != std::u16string::npos;
}

bool textStartsWith(const String& text, const String& part) { return folded(text).starts_with(folded(part)); }

bool textEndsWith(const String& text, const String& part) { return folded(text).ends_with(folded(part)); }

TextSearch::TextSearch(const String& text, const std::vector<String>& wanted)
{
    fold(text);
    for (const String& part : wanted) {
        if (auto form = folded(part); !form.empty())
            m_wanted.push_back(std::move(form));
    }
}

void TextSearch::fold(const String& text)
{
    m_folded.reserve(text.length());
    bool aligned = true;
    for (std::size_t index = 0; index < text.length();) {
        const std::size_t start = index;
        UChar32 character = 0;
        U16_NEXT(text.data(), index, text.length(), character);
        const std::size_t before = m_folded.size();
        appendFolded(m_folded, character);
        if (aligned && m_folded.size() == index)
            continue;
        if (aligned) {
            aligned = false;
            for (std::uint32_t unit = 0; unit < start; ++unit)
                m_origin.push_back(unit);
        }
        m_origin.resize(m_origin.size() + m_folded.size() - before, static_cast<std::uint32_t>(start));
    }
    if (!aligned)
        m_origin.push_back(static_cast<std::uint32_t>(text.length()));
}

FoundRange TextSearch::next()
{
    std::size_t place = std::u16string::npos;
    std::size_t length = 0;
    for (const std::u16string& part : m_wanted) {
        const std::size_t found = m_folded.find(part, m_at);
        if (found < place || (found == place && found != std::u16string::npos && part.size() > length)) {
            place = found;
            length = part.size();
        }
    }
    if (place == std::u16string::npos)
        return {};
    m_at = place + length;
    if (m_origin.empty())
        return { { place, length } };
    return { { m_origin[place], m_origin[m_at] - m_origin[place] } };
}

} // namespace caddis::applescript
