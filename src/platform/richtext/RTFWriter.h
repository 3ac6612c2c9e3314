#pragma once

#include "platform/richtext/RTF.h"

#include <array>
#include <map>

/// Inside this folder: the machine that writes RTF, in the order of a document: head, tables, text.
namespace caddis::rtf {

/// The numbers that fonts, colours and lists have in one document, in the order in which its styles name
/// them.
class WriterTables {
public:
    explicit WriterTables(const AttributedString& text);

    std::size_t font(const String& name) const { return m_fontNumbers.at(name); }
    /// 0, the reader's own colour, for nil.
    std::size_t color(const std::optional<TextColor>& color) const;
    /// 0 for none.
    std::size_t list(const std::vector<std::uint32_t>& lists) const;

    void append(std::string& out) const;

private:
    using ColorKey = std::array<std::int32_t, 4>;
    static ColorKey keyOf(const TextColor& color)
    {
        return { color.red, color.green, color.blue, color.alpha };
    }
    void addFont(const String& name);
    void addColor(const std::optional<TextColor>& color);
    void addLists(const std::vector<std::uint32_t>& lists);
    void appendColors(std::string& out) const;
    void appendLists(std::string& out) const;

    const AttributedString& m_text;
    std::vector<String> m_fonts;
    std::map<String, std::size_t> m_fontNumbers;
    std::vector<TextColor> m_colors;
    std::map<ColorKey, std::size_t> m_colorNumbers;
    std::vector<std::vector<std::uint32_t>> m_chains; // Of lists, each the deepest of its number.
    std::map<std::vector<std::uint32_t>, std::size_t> m_chainNumbers;
};

/// Appends the group of the document's attributes and the words for its paper and margins.
void appendDocumentAttributes(std::string& out, const Dictionary& attributes);

/// How many cells both are in, from the outermost on.
std::size_t commonCells(const std::vector<TableCell>& left, const std::vector<TableCell>& right);

class Writer {
public:
    Writer(const AttributedString& text, RTFAttachments attachments, const std::vector<String>& memberNames);
    std::string write(const Dictionary& attributes) &&;

private:
    struct OpenRow {
        std::vector<TableCell> cells;
        long share = 0; // Twips, of a column without a width.
        std::vector<TableCell> tall {}; // By column: the last cell of several rows that stands above.
        std::size_t coveredAtEnd = 0; // Columns behind the last cell.
        std::size_t mostCovered = 0; // Columns of one cell, or between two.
    };

    void paragraph(Range range, const ParagraphStyle& style, const ParagraphStyle* next);
    void paragraphProperties(const ParagraphStyle& style);
    void lineProperties(const ParagraphStyle& style);
    void pieces(Range range);
    void piece(std::u16string_view text, const CharacterStyle& style);
    void characterProperties(const CharacterStyle& style);
    void attachment(const CharacterStyle& style);
    void setLink(const String& link);
    void beginRows(const ParagraphStyle& style);
    void beginRow(std::size_t level, const ParagraphStyle& style);
    void endCells(const ParagraphStyle& style, const ParagraphStyle* next);
    void endCell(std::size_t level);
    void endCoveredCells(std::size_t level, std::size_t count);
    void endRow(std::size_t level, bool isLast);
    void tableParagraph(std::size_t level);
    void rowDefinition(std::size_t level);
    void coveredDefinition(const OpenRow& row, std::size_t column, long& right);
    void cellDefinition(const OpenRow& row, const TableCell& cell, long& right);
    void cellLooks(const TableCell& cell);
    void cellBorders(const TableCell& cell);
    std::vector<TableCell> cellsOfRow(std::size_t level, const TableCell& cell) const;

    const AttributedString& m_text;
    RTFAttachments m_attachments;
    const std::vector<String>& m_memberNames;
    WriterTables m_tables;
    std::string m_out;
    std::size_t m_run = 0; // The run that the present location is in.
    std::size_t m_paragraphRun = 0;

    const ParagraphStyle* m_paragraph = nullptr; // As written.
    bool m_isParagraphInField = false; // It was written inside the field that is open, and ends with it.
    std::optional<CharacterStyle> m_style; // As written.
    String m_link; // Of the field that is open.
    std::optional<CharacterStyle> m_styleOutside; // Of that field.
    std::vector<TableCell> m_cells; // Of the paragraph before.

    std::size_t m_coveredColumns = 0; // Of all rows so far.
    std::vector<OpenRow> m_rows; // Those that the present paragraph is in, the outermost first.
};

} // namespace caddis::rtf
