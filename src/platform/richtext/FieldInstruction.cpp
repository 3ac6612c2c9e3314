#include "platform/richtext/FieldInstruction.h"

#include <string>

namespace caddis {

namespace {

std::u16string_view trimmed(std::u16string_view text)
{
    const std::size_t begin = text.find_first_not_of(u' ');
    return begin == text.npos ? std::u16string_view()
                              : text.substr(begin, text.find_last_not_of(u' ') + 1 - begin);
}

// The text between the first pair of quotes, else up to the next blank.
String argument(std::u16string_view text)
{
    const std::u16string_view rest = trimmed(text);
    if (!rest.starts_with(u'"'))
        return String(rest.substr(0, rest.find(u' ')));
    return String(rest.substr(1, rest.substr(1).find(u'"')));
}

} // namespace

String linkOfFieldInstruction(std::u16string_view instruction)
{
    constexpr std::u16string_view Keyword = u"HYPERLINK";
    const std::u16string_view text = trimmed(instruction);
    if (!text.starts_with(Keyword))
        return {};
    const std::u16string_view rest = trimmed(text.substr(Keyword.size()));
    if (!rest.starts_with(u"\\l"))
        return argument(rest);
    const String place = argument(rest.substr(2));
    return place.isEmpty() ? place : String(u"#" + std::u16string(place.view()));
}

} // namespace caddis
