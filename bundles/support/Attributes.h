#pragma once

#include "platform/base/String.h"
#include "platform/plugin/caddis_importer.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace caddis::bundles {

/// What one import finds out about a file: the host's dictionary, written through the host's functions.
///
/// A string loses the white space at its ends, and nothing is set when nothing is left of it. No string is
/// longer than MaximumString bytes, and all lists together have at most MaximumItems entries: a file decides
/// neither how much memory its attributes take nor how long they take to send.
class Attributes {
public:
    static constexpr std::size_t MaximumString = 64 * 1024;
    static constexpr std::size_t MaximumItems = 10'000;

    Attributes(const CaddisHost& host, CaddisValue* dictionary)
        : m_host(host)
        , m_dictionary(dictionary)
    {
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    void setString(const char* key, std::string_view utf8);
    void setString(const char* key, const String& text) { setString(key, text.utf8()); }
    void setString(const char* key, const std::optional<String>& text);
    void setInteger(const char* key, std::int64_t value);
    /// What is not a finite number is not set.
    void setReal(const char* key, double value);
    void setBoolean(const char* key, bool value);
    void setDate(const char* key, std::optional<double> secondsSince1970);

    /// Adds to the list of strings at `key`.
    void addString(const char* key, std::string_view utf8);
    /// Adds each part of a list in one text: "red; green, blue" with the separators ",;".
    void addParts(const char* key, std::string_view utf8, std::string_view separators = ",;");

    /// Adds to the text content as it stands; TextSink is the usual way. False: the host wants no more.
    bool appendText(std::string_view utf8);
    /// Whether the time or the room for text is used up. Asked in every loop that a file can make long.
    bool shouldStop() const;

private:
    const CaddisHost& m_host;
    CaddisValue* m_dictionary;
    std::size_t m_items = 0;
    bool m_isTextFull = false;
};

} // namespace caddis::bundles
