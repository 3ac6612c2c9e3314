#include "bundles/Cards/ContentLines.h"

#include "bundles/support/Utf8.h"

namespace caddis::bundles {

namespace {

// The first `sign` outside quotes.
std::size_t findUnquoted(std::string_view line, char sign)
{
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            isQuoted = !isQuoted;
        else if (line[i] == sign && !isQuoted)
            return i;
    }
    return line.npos;
}

bool visitLine(std::string_view line, FunctionRef<bool(const ContentLine&)> visit)
{
    const auto colon = findUnquoted(line, ':');
    if (colon == line.npos)
        return true;
    const std::string_view head = line.substr(0, colon);
    const auto semicolon = head.find(';');
    std::string_view name = head.substr(0, semicolon);
    if (const auto dot = name.rfind('.'); dot != name.npos)
        name.remove_prefix(dot + 1);
    return visit({ trimmed(name), semicolon == head.npos ? std::string_view() : head.substr(semicolon + 1),
        line.substr(colon + 1) });
}

} // namespace

void readContentLines(std::string_view text, FunctionRef<bool(const ContentLine&)> visit)
{
    std::string joined;
    while (!text.empty()) {
        std::string_view line = takeUntil(text, '\n');
        joined = line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0));
        while (text.starts_with(' ') || text.starts_with('\t')) {
            line = takeUntil(text, '\n').substr(1);
            joined.append(line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0)));
        }
        if (!visitLine(joined, visit))
            return;
    }
}

std::string unescaped(std::string_view value)
{
    std::string text;
    text.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            ++i;
            text += value[i] == 'n' || value[i] == 'N' ? '\n' : value[i];
        } else {
            text += value[i];
        }
    }
    return text;
}

std::string takePart(std::string_view& rest, char separator)
{
    std::size_t end = 0;
    while (end < rest.size() && rest[end] != separator)
        end += rest[end] == '\\' && end + 1 < rest.size() ? 2 : 1;
    std::string part = unescaped(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

} // namespace caddis::bundles
