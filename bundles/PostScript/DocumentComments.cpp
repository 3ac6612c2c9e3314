#include "bundles/PostScript/DocumentComments.h"

#include "bundles/support/Utf8.h"

namespace caddis::bundles {

namespace {

constexpr std::size_t MaximumHeader = 64 * 1024;
constexpr std::size_t MaximumTrailer = 64 * 1024;
constexpr std::size_t MaximumValue = 4096;
constexpr std::string_view PutOff = "(atend)";

using Comments = std::map<std::string, std::string, std::less<>>;

std::size_t u32(std::string_view bytes, std::size_t offset)
{
    std::size_t value = 0;
    for (std::size_t i = 4; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
    return value;
}

// A DOS file is a header, the PostScript (offset and length in bytes 4 to 11) and a picture of it.
std::string_view programOf(std::string_view file)
{
    constexpr std::size_t HeaderSize = 30;
    if (!file.starts_with("\xC5\xD0\xD3\xC6") || file.size() < HeaderSize)
        return file;
    return file.substr(std::min(u32(file, 4), file.size()), u32(file, 8));
}

std::string_view takeLine(std::string_view& rest)
{
    const auto end = std::min(rest.find_first_of("\r\n"), rest.size());
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end);
    rest.remove_prefix(rest.starts_with("\r\n") ? 2 : rest.empty() ? 0 : 1);
    return line;
}

// The character behind a backslash, which is taken along with further octal digits.
char takeEscape(std::string_view& text)
{
    constexpr std::string_view Letters = "nrtbf";
    constexpr std::string_view Characters = "\n\r\t\b\f";
    const auto isOctal
        = [&](std::size_t at) { return at < text.size() && text[at] >= '0' && text[at] <= '7'; };
    if (!isOctal(0)) {
        const char letter = text.front();
        text.remove_prefix(1);
        const auto known = Letters.find(letter);
        return known == Letters.npos ? letter : Characters[known];
    }
    unsigned value = 0;
    for (int digits = 0; digits < 3 && isOctal(0); ++digits) {
        value = value * 8 + static_cast<unsigned>(text.front() - '0');
        text.remove_prefix(1);
    }
    return static_cast<char>(value);
}

std::string valueOf(std::string_view text)
{
    text = trimmed(text).substr(0, MaximumValue);
    if (text.size() < 2 || !text.starts_with('(') || !text.ends_with(')'))
        return std::string(text);
    text = text.substr(1, text.size() - 2);
    std::string value;
    while (!text.empty()) {
        const char character = text.front();
        text.remove_prefix(1);
        value += character == '\\' && !text.empty() ? takeEscape(text) : character;
    }
    return value;
}

struct Comment {
    std::string_view name, value;
};

Comment commentIn(std::string_view line)
{
    const auto colon = line.find(':');
    if (!line.starts_with("%%") || colon == line.npos)
        return {};
    return { trimmed(line.substr(2, colon - 2)), trimmed(line.substr(colon + 1)) };
}

// The header ends with its own comment, or with the first line that is none.
Comments readHeader(std::string_view program)
{
    Comments comments;
    std::string_view rest = program.substr(0, MaximumHeader);
    while (!rest.empty()) {
        const std::string_view line = takeLine(rest);
        if (!line.starts_with('%') || line.starts_with("%%EndComments"))
            break;
        if (const Comment comment = commentIn(line); !comment.name.empty())
            comments.try_emplace(std::string(comment.name), valueOf(comment.value));
    }
    return comments;
}

} // namespace

std::map<std::string, std::string, std::less<>> readDocumentComments(std::string_view file)
{
    const std::string_view program = programOf(file);
    if (!program.starts_with("%!"))
        return {};
    Comments comments = readHeader(program);
    std::erase_if(comments, [](const auto& entry) { return entry.first.empty(); });
    std::string_view rest = program.substr(program.size() - std::min(program.size(), MaximumTrailer));
    rest.remove_prefix(std::min(rest.rfind("%%Trailer"), rest.size()));
    while (!rest.empty()) {
        const Comment comment = commentIn(takeLine(rest));
        const auto open = comments.find(comment.name);
        if (open != comments.end() && comment.value != PutOff && open->second == "atend")
            open->second = valueOf(comment.value);
    }
    std::erase_if(comments, [](const auto& entry) { return entry.second == "atend"; });
    return comments;
}

} // namespace caddis::bundles
