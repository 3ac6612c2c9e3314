#pragma once

#include "platform/richtext/AttributedStringBuilder.h"
#include "platform/unicode/StringEncoding.h"

#include <map>
#include <unordered_map>

/// Inside this folder: the tables at the head of an RTF document, as they are filled.
namespace caddis::rtf {

/// The code page of a font's \fcharset; InvalidId where the document's own counts (RTF 1.9.1, "Font Table").
CFStringEncoding encodingOfCharset(std::int32_t charset);
/// The encoding with the number of a Windows code page; windows-1252 for those that are not known.
CFStringEncoding encodingOfCodePage(std::int32_t codePage);

struct FontEntry {
    String name;
    CFStringEncoding encoding = CFStringEncoding::InvalidId;
    bool isSymbol = false; ///< bytes are glyphs
};

class FontTable {
public:
    void begin(std::int32_t number) { m_current = number; }
    FontEntry& current() { return m_fonts[m_current]; }
    /// Names end with ";".
    void takeText(std::u16string_view units);
    /// Null pointer for a number without an entry.
    const FontEntry* find(std::int32_t number) const;

private:
    std::unordered_map<std::int32_t, FontEntry> m_fonts;
    std::int32_t m_current = 0;
    std::u16string m_name;
};

/// \colortbl, and \*\expandedcolortbl, whose entries come before those of the former. Each entry ends with
/// ";".
class ColorTable {
public:
    void setPart(char part, std::int32_t value);
    void takeText(std::u16string_view units);
    void expandedModel(bool isGray);
    void expandedPart(std::int32_t value);
    void takeExpandedText(std::u16string_view units);

    /// Nil for an entry that is empty or missing.
    std::optional<TextColor> color(std::int32_t index) const;

private:
    std::vector<std::optional<TextColor>> m_colors;
    std::vector<std::optional<TextColor>> m_expanded;
    std::optional<TextColor> m_current;
    std::vector<std::int32_t> m_parts;
    bool m_isGray = false;
    bool m_hasModel = false;
};

/// \*\listtable and \*\listoverridetable: which marker the level of an \ls has.
class ListTable {
public:
    void beginList() { m_levels.clear(); }
    void beginLevel()
    {
        m_levels.emplace_back();
        m_hasMarker = false;
    }
    void setFormat(std::int32_t numberFormat);
    void setMarker(std::u16string_view marker);
    /// Counts where there is no marker: that is what its writer called it.
    void setLevelText(std::u16string_view text);
    void setStart(std::int32_t number);
    void setIdentifier(std::int32_t identifier) { m_lists[identifier] = m_levels; }

    void overrideIdentifier(std::int32_t identifier) { m_override = identifier; }
    void overrideNumber(std::int32_t number) { m_overrides[number] = m_override; }

    /// The lists of an item at that level, the outermost first; they are added to `builder` on first use.
    std::vector<std::uint32_t> lists(
        std::int32_t number, std::int32_t level, AttributedStringBuilder& builder);

private:
    std::vector<TextList> m_levels;
    bool m_hasMarker = false; // The last one of them.
    std::map<std::int32_t, std::vector<TextList>> m_lists;
    std::map<std::int32_t, std::int32_t> m_overrides;
    std::int32_t m_override = 0;
    std::map<std::pair<std::int32_t, std::int32_t>, std::uint32_t> m_used;
};

} // namespace caddis::rtf
