#pragma once

#include "platform/richtext/RTFRows.h"
#include "platform/richtext/RTFTables.h"
#include "platform/richtext/RTFTokens.h"

#include <memory>

/// Inside this folder: the machine that reads RTF. Groups push a state, control words change it, text goes to
/// the destination that the state names.
namespace caddis::rtf {

enum class Destination : std::uint8_t {
    Body,
    Skip,
    Fonts,
    Colors,
    ExpandedColors,
    Lists,
    Overrides,
    Info, ///< whose groups are InfoText and InfoTime
    InfoText,
    InfoTime,
    Instruction, ///< of a field
    Marker, ///< \*\levelmarker
    LevelText,
    Graphic, ///< \NeXTGraphic
};

/// The character properties of a group, numbers as they are written.
struct Letters {
    std::int32_t font = -1; ///< -1: the document's default
    std::int32_t size = 12000; ///< thousandths of a point
    std::int32_t foreground = 0;
    std::int32_t background = 0;
    std::int32_t superscript = 0;
    std::int32_t baseline = 0; ///< half points
    std::int32_t kern = 0; ///< twips
    std::int32_t link = -1; ///< index
    LineStyle underline = LineStyle::None;
    LineStyle strikethrough = LineStyle::None;
    bool bold = false;
    bool italic = false;
    bool hidden = false;

    friend bool operator==(const Letters&, const Letters&) = default;
};

struct LettersHash {
    std::size_t operator()(const Letters& letters) const;
};

/// The paragraph properties that end in a ParagraphStyle only together with others.
struct Paragraph {
    ParagraphStyle style;
    TabAlignment nextTab = TabAlignment::Left;
    std::int32_t lineHeight = 0; ///< \sl, twips
    bool isLineMultiple = false;
    std::int32_t firstLine = 0; ///< \fi, twips
    std::int32_t list = -1; ///< \ls
    std::int32_t listLevel = 0;
    std::int32_t tableLevel = 0; ///< \itap, or 1 for \intbl
};

struct State {
    Destination destination = Destination::Body;
    bool ownsDestination = false;
    std::int32_t skippedAfterUnicode = 1; ///< \uc
    std::int32_t fieldLink = -1; ///< of the field whose group this is
    Letters letters;
    std::shared_ptr<Paragraph> paragraph; ///< groups share it until one changes it
};

/// A cell that may reach into the rows below it.
struct TallCell {
    std::uint32_t column;
    std::uint32_t row;
    Range text;
};

/// A table that the present paragraph is in.
struct OpenTable {
    std::uint32_t table;
    std::size_t rowBegin; ///< where the text of the present row begins
    std::uint32_t row = 0;
    std::uint32_t column = 0;
    std::uint32_t columns = 0;
    std::vector<TallCell> tall {};
};

class Reader {
public:
    Reader(std::string_view bytes, const FileWrapper* package);
    AttributedString read() &&;

private:
    using Number = std::optional<std::int32_t>;

    void handle(const Token& token);
    void open();
    void close();
    void word(std::string_view name, Number number);
    bool destinationWord(std::string_view name);
    bool tableWord(std::string_view name, Number number);
    bool headWord(std::string_view name, Number number);
    bool lookWord(std::string_view name, Number number);
    bool rowWord(std::string_view name, Number number);
    bool documentWord(std::string_view name, std::int32_t value);
    bool timeWord(std::string_view name, std::int32_t value);
    bool graphicWord(std::string_view name, std::int32_t value);
    bool textWord(std::string_view name);
    void symbol(char character);
    void unicode(std::int32_t number);
    void begin(Destination destination);

    void takeByte(char byte);
    void flushBytes();
    String decodedBytes() const;
    void takeUnits(std::u16string_view units);
    void takeAscii(std::string_view bytes);
    CharacterStyle characterStyle() const;
    AttributedStringBuilder::StyleNumber styleNumber();
    const FontEntry* font() const;
    CFStringEncoding encoding() const;

    void endText();
    void endParagraph();
    void endCell(bool isNested);
    void endRow(bool isNested);
    void styleRow();
    void noteTallCell(std::uint32_t column, Range text);
    void endTallCells(const RowDefinition* below);
    void closeTables(std::size_t level);
    Paragraph& editParagraph();
    AttributedStringBuilder::ParagraphNumber paragraphNumber();
    ParagraphStyle paragraphStyle();
    void openTables();

    void finishDestination(Destination destination);
    void finishInstruction();
    void finishGraphic();
    void finishInfo();

    Tokens m_tokens;
    const FileWrapper* m_package;
    AttributedStringBuilder m_builder;
    Dictionary m_attributes;

    std::vector<State> m_states;
    State m_state;
    std::shared_ptr<Paragraph> m_lastParagraph; // Of the document's group.
    std::size_t m_uncountedGroups = 0;
    bool m_isStarred = false;
    bool m_isGroupStart = false; // Nothing has come since the brace but a star.
    std::int32_t m_toSkip = 0;

    std::string m_bytes; // Of the present code page, not decoded yet.
    std::u16string m_text; // Of the present destination.
    bool m_isNameComplete = false; // Of a graphic.
    Size m_graphicSize;
    std::string_view m_infoName;
    std::vector<std::int32_t> m_time; // Year, month, day, hour, minute, second.

    FontTable m_fonts;
    ColorTable m_colors;
    ListTable m_listTable;
    std::vector<String> m_links;
    std::int32_t m_defaultFont = 0;
    CFStringEncoding m_encoding = CFStringEncoding::WindowsLatin1;
    Size m_paper;
    Size m_view;
    std::optional<double> m_version;

    std::unordered_map<Letters, AttributedStringBuilder::StyleNumber, LettersHash> m_styleNumbers;
    std::optional<AttributedStringBuilder::StyleNumber> m_styleNumber; // Of the present letters.
    std::optional<AttributedStringBuilder::ParagraphNumber> m_paragraphNumber; // Of the present paragraph.

    std::vector<OpenTable> m_openTables;
    std::size_t m_cellCount = 0; // Of all tables.
    std::vector<RowDefinition> m_rows; // As they were said last, by level.
    std::size_t m_innerEnd = 0; // Where the last row of a nested table ended, of the table at that level.
    std::size_t m_innerLevel = 0;
    std::vector<AttributedStringBuilder::Insertion> m_coveredBreaks; // Line breaks of covered cells, to go.
};

} // namespace caddis::rtf
