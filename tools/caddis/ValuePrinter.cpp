#include "ValuePrinter.h"

#include "foundation/Base64.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace caddis::tool {

namespace {

constexpr std::size_t LongestShownText = 400;

template <typename... Cases> struct Overloaded : Cases... {
    using Cases::operator()...;
};

template <typename... Cases> Overloaded(Cases...) -> Overloaded<Cases...>;

std::string quoted(std::string_view text)
{
    std::string result = "\"";
    for (const char byte : text) {
        if (byte == '"' || byte == '\\')
            result += '\\';
        if (static_cast<unsigned char>(byte) >= 0x20) {
            result += byte;
            continue;
        }
        char escape[8] = {};
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
        result += escape;
    }
    return result + '"';
}

template <typename Number> std::string number(Number value)
{
    char digits[32] = {};
    return { digits, std::to_chars(digits, digits + sizeof digits, value).ptr };
}

// Messages carry floats as doubles: those that a float can hold are shown with a float's digits.
std::string number(double value)
{
    const auto single = static_cast<float>(value);
    return single == value ? number<float>(single) : number<double>(value);
}

std::string iso8601(Date date)
{
    const std::string text = date.description().utf8(); // "2001-01-01 00:00:00 +0000"
    return text.size() == 25 ? text.substr(0, 10) + 'T' + text.substr(11, 8) + 'Z' : text;
}

template <typename Items, typename ToText>
std::string joined(const Items& items, std::string_view separator, ToText toText)
{
    std::string result;
    for (const auto& item : items) {
        if (&item != &*items.begin())
            result += separator;
        result += toText(item);
    }
    return result;
}

std::string shownText(const String& text)
{
    std::string line = text.substringTo(std::min(text.length(), LongestShownText)).utf8();
    std::ranges::replace_if(
        line, [](char byte) { return static_cast<unsigned char>(byte) < 0x20; }, ' ');
    return text.length() > LongestShownText ? line + "… (" + number(text.length()) + " units)" : line;
}

} // namespace

std::string shown(const Value& value)
{
    return std::visit(Overloaded {
                          [](Null) { return std::string("null"); },
                          [](bool yes) { return std::string(yes ? "yes" : "no"); },
                          [](const String& text) { return shownText(text); },
                          [](const Data& data) { return '<' + number(data.size()) + " bytes>"; },
                          [](Date date) { return date.description().utf8(); },
                          [](const URL& url) { return url.absoluteString().utf8(); },
                          [](const Array& array) { return joined(array, "; ", shown); },
                          [](const Dictionary& dictionary) {
                              return joined(dictionary, ", ", [](const Dictionary::Entry& entry) {
                                  return entry.key.utf8() + ": " + shown(entry.value);
                              });
                          },
                          [](auto other) { return number(other); },
                      },
        value.variant());
}

std::string json(const Value& value)
{
    return std::visit(
        Overloaded {
            [](Null) { return std::string("null"); },
            [](bool yes) { return std::string(yes ? "true" : "false"); },
            [](const String& text) { return quoted(text.utf8()); },
            [](const Data& data) { return "{\"base64\": \"" + base64EncodedString(data).utf8() + "\"}"; },
            [](Date date) { return quoted(iso8601(date)); },
            [](const URL& url) { return quoted(url.absoluteString().utf8()); },
            [](const Array& array) { return '[' + joined(array, ", ", json) + ']'; },
            [](const Dictionary& dictionary) {
                return '{' + joined(dictionary, ", ", [](const Dictionary::Entry& entry) {
                    return quoted(entry.key.utf8()) + ": " + json(entry.value);
                }) + '}';
            },
            [](std::floating_point auto real) {
                return std::isfinite(real) ? number(real) : std::string("null");
            },
            [](std::integral auto integer) { return number(integer); },
        },
        value.variant());
}

std::string lines(const Dictionary& dictionary)
{
    std::size_t width = 0;
    for (const auto& entry : dictionary)
        width = std::max(width, entry.key.length());
    std::string result;
    for (const auto& [key, value] : dictionary) {
        const std::string name = key.utf8();
        result += "  " + name + std::string(width + 2 - std::min(width, key.length()), ' ') + shown(value)
            + '\n';
    }
    return result;
}

Dictionary withEntriesOf(const Dictionary& dictionary, std::u16string_view key)
{
    Dictionary result = dictionary;
    const Value* const inner = dictionary.find(key);
    if (const auto* const entries = inner ? inner->as<Dictionary>() : nullptr) {
        for (const auto& [name, value] : *entries)
            result.set(name, value);
    }
    result.remove(key);
    return result;
}

} // namespace caddis::tool
