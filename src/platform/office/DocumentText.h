#pragma once

#include "platform/office/Numbering.h"
#include "platform/richtext/AttributedStringBuilder.h"

/// Inside this folder: the text of an office document as it is put together, body and notes.
namespace caddis::office {

/// Paragraphs are appended in the order of the document. Notes may come in the middle of one: they go to a
/// story of their own, which ends up behind the body.
class DocumentText {
public:
    DocumentText() = default;
    DocumentText(const DocumentText&) = delete;
    DocumentText& operator=(const DocumentText&) = delete;

    void append(std::u16string_view units, const CharacterStyle& style);
    /// Left out when the attachments together are longer than 512 MiB.
    void appendAttachment(Attachment attachment, const CharacterStyle& style);
    /// Appends the line break and gives the paragraph its style; the cells it is in are added.
    void endParagraph(ParagraphStyle style, const CharacterStyle& lineBreak);
    bool isAtParagraphStart() const { return m_story->builder.length() == m_story->paragraph; }

    /// The lists that an item of the level is in, the outermost first.
    std::vector<std::uint32_t> lists(const Numbering& numbering, const String& list, int level);

    void beginTable();
    void endTable();
    void endRow();
    void beginCell();
    /// The innermost open cell; its place is set already. Null pointer outside of cells.
    TableCell* cell();
    /// Gives a cell without a paragraph one. The next one begins `columns` behind its beginning.
    void endCell(std::uint32_t columns);
    /// Columns that belong to cells of the rows above.
    void skipColumns(std::uint32_t count);

    void beginNote();
    void endNote();
    bool isInNote() const { return m_story == &m_notes; }

    AttributedString finish(Dictionary attributes) &&;

private:
    struct OpenTable {
        TableCell cell;
        std::uint32_t columns = 0;
        std::size_t cellBegin = 0;
        bool isInCell = false;
    };
    struct Story {
        AttributedStringBuilder builder;
        std::size_t paragraph = 0; // Where the present one begins.
        std::vector<OpenTable> tables;
        std::size_t uncountedTables = 0;
        std::map<std::pair<String, int>, std::uint32_t> lists;
    };

    Story m_body;
    Story m_notes;
    Story* m_story = &m_body;
    std::size_t m_attachedBytes = 0;
};

} // namespace caddis::office
