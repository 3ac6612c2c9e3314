#include "platform/richtext/AttributedString.h"

namespace caddis {

namespace {

std::u16string_view trimmed(std::u16string_view text)
{
    constexpr std::u16string_view Blanks = u" \t\r\n";
    const std::size_t begin = text.find_first_not_of(Blanks);
    return begin == std::u16string_view::npos ? std::u16string_view()
                                              : text.substr(begin, text.find_last_not_of(Blanks) + 1 - begin);
}

std::u16string_view keywordSeparator(std::u16string_view line)
{
    for (const std::u16string_view separator : { u", ", u"," }) {
        if (line.find(separator) != std::u16string_view::npos)
            return separator;
    }
    return u" ";
}

} // namespace

Array keywordsOf(const String& line)
{
    const std::u16string_view separator = keywordSeparator(line);
    Array keywords;
    for (std::u16string_view rest = line; !rest.empty();) {
        const std::size_t end = std::min(rest.find(separator), rest.size());
        if (const auto keyword = trimmed(rest.substr(0, end)); !keyword.empty())
            keywords.emplace_back(String(keyword));
        rest.remove_prefix(std::min(end + separator.size(), rest.size()));
    }
    return keywords;
}

} // namespace caddis
