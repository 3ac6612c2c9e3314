#include "platform/base/Format.h"

#include <charconv>

namespace caddis::detail {

void appendArgument(MutableString& out, std::int64_t value)
{
    char digits[24] = {};
    const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    for (const char* digit = digits; digit != end; ++digit)
        out.append(static_cast<char16_t>(*digit));
}

std::u16string_view appendUpToSpecifier(MutableString& out, std::u16string_view pattern)
{
    for (;;) {
        const std::size_t percent = pattern.find(u'%');
        out.append(pattern.substr(0, percent));
        if (percent == pattern.npos)
            return {};
        const bool isLiteral = pattern[percent + 1] == u'%';
        pattern.remove_prefix(percent + 2);
        if (!isLiteral)
            return pattern;
        out.append(u'%');
    }
}

} // namespace caddis::detail
