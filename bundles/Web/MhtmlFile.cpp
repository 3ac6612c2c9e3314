#include "bundles/Web/MhtmlFile.h"

#include "bundles/support/Utf8.h"
#include "platform/base/HexDigit.h"

#include <vector>

namespace caddis::bundles {

namespace {

struct Headers {
    std::string contentType, encoding, location;
};

// Takes the header off `rest`, up to and with the empty line. A line that begins with white space belongs to
// the one before it.
Headers takeHeaders(std::string_view& rest)
{
    Headers headers;
    std::string* current = nullptr;
    while (!rest.empty()) {
        const std::string_view line = takeUntil(rest, '\n');
        if (trimmed(line).empty())
            break;
        if (line.front() == ' ' || line.front() == '\t') {
            if (current)
                current->append(" ").append(trimmed(line));
            continue;
        }
        const auto colon = line.find(':');
        const std::string_view name = line.substr(0, colon);
        current = equalsNoCase(name, "Content-Type")          ? &headers.contentType
            : equalsNoCase(name, "Content-Transfer-Encoding") ? &headers.encoding
            : equalsNoCase(name, "Content-Location")          ? &headers.location
                                                              : nullptr;
        if (current && colon != line.npos)
            *current = trimmed(line.substr(colon + 1));
    }
    return headers;
}

std::string boundaryOf(std::string_view contentType)
{
    constexpr std::string_view Name = "boundary=";
    for (std::size_t at = contentType.find(';'); at != contentType.npos; at = contentType.find(';', at + 1)) {
        std::string_view parameter = trimmed(contentType.substr(at + 1));
        if (!startsWithNoCase(parameter, Name))
            continue;
        parameter.remove_prefix(Name.size());
        if (parameter.starts_with('"'))
            return std::string(parameter.substr(1, parameter.find('"', 1) - 1));
        return std::string(trimmed(parameter.substr(0, parameter.find(';'))));
    }
    return {};
}

std::string decodeQuotedPrintable(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const auto end = text.find('=');
        bytes.append(text.substr(0, end));
        if (end == text.npos)
            break;
        text.remove_prefix(end + 1);
        if (text.starts_with("\r\n") || text.starts_with('\n')) {
            text.remove_prefix(text.front() == '\r' ? 2 : 1);
        } else if (const int byte = caddis::hexByte(text); byte >= 0) {
            bytes += static_cast<char>(byte);
            text.remove_prefix(2);
        } else {
            bytes += '=';
        }
    }
    return bytes;
}

std::string decodeBase64(std::string_view text)
{
    constexpr std::string_view Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0;
    int count = 0;
    for (const char c : text) {
        const auto value = Digits.find(c);
        if (value == Digits.npos)
            continue; // line ends, padding
        bits = (bits << 6) | static_cast<unsigned>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return bytes;
}

MhtmlPage pageOf(const Headers& headers, std::string_view body)
{
    std::string bytes = equalsNoCase(headers.encoding, "quoted-printable") ? decodeQuotedPrintable(body)
        : equalsNoCase(headers.encoding, "base64")                         ? decodeBase64(body)
                                                                           : std::string(body);
    return { std::move(bytes), headers.contentType, headers.location };
}

} // namespace

std::optional<MhtmlPage> readMhtml(std::string_view file)
{
    // Boundaries that are in force, the innermost last: a part may itself be a multipart.
    std::vector<std::string> boundaries;
    std::string_view rest = file;
    Headers headers = takeHeaders(rest);
    while (true) {
        if (startsWithNoCase(headers.contentType, "multipart/") && boundaries.size() < 8)
            boundaries.push_back("--" + boundaryOf(headers.contentType));
        const bool isPage = startsWithNoCase(headers.contentType, "text/html")
            || startsWithNoCase(headers.contentType, "application/xhtml+xml");
        const std::string_view body = rest;
        std::size_t length = 0;
        bool isAtBoundary = false;
        while (!rest.empty() && !isAtBoundary) {
            length = body.size() - rest.size();
            const std::string_view line = trimmed(takeUntil(rest, '\n'));
            for (const std::string& boundary : boundaries)
                isAtBoundary = isAtBoundary || (boundary.size() > 2 && line.starts_with(boundary));
        }
        if (isPage)
            return pageOf(headers, isAtBoundary ? body.substr(0, length) : body);
        if (!isAtBoundary)
            return std::nullopt;
        headers = takeHeaders(rest);
    }
}

} // namespace caddis::bundles
