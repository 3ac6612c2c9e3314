#pragma once

#include "platform/base/FunctionRef.h"
#include "platform/base/Range.h"
#include "platform/richtext/AttributedString.h"

#include <memory>

namespace caddis {

/// Makes an AttributedString from front to back.
///
///     AttributedStringBuilder builder;
///     builder.append(u"Title", heading);
///     builder.append(u"\n", heading);
///     builder.endParagraphs(centered);
///     AttributedString text = std::move(builder).finish();
///
/// Each call costs time in proportion to what it is given, equal styles are kept once.
class AttributedStringBuilder {
public:
    /// Text to be put between what was appended, with the looks of the character it comes before, or in place
    /// of it.
    struct Insertion {
        std::size_t location;
        String text;
        bool replaces = false; ///< the character at `location` goes
    };

    /// Stands for a style in calls that come often. There is no empty one: `{}` is always a style.
    template <typename Style> class Number {
    public:
        explicit Number(std::uint32_t index)
            : m_index(index)
        {
        }

    private:
        friend class AttributedStringBuilder;
        std::uint32_t m_index;
    };
    using StyleNumber = Number<CharacterStyle>;
    using ParagraphNumber = Number<ParagraphStyle>;

    AttributedStringBuilder();
    ~AttributedStringBuilder();
    AttributedStringBuilder(AttributedStringBuilder&&) noexcept;
    AttributedStringBuilder& operator=(AttributedStringBuilder&&) noexcept;

    void append(std::u16string_view units, const CharacterStyle& style);
    /// The same with a style's number. `ascii` has one byte a unit.
    void append(std::u16string_view units, StyleNumber style);
    void appendAscii(std::string_view ascii, StyleNumber style);
    /// Appends the attachment's character. `style`'s own attachment does not count.
    void appendAttachment(Attachment attachment, const CharacterStyle& style);

    /// Appends another text as paragraphs of its own: the present one ends with the plain style if nothing
    /// gave it one. Its document attributes don't count.
    void append(const AttributedString& text);

    /// Gives a style to the paragraphs appended since the last call. The text should end with a line break
    /// now, or be at its end; what follows on the same line takes the style of its own call.
    void endParagraphs(const ParagraphStyle& style);
    void endParagraphs(ParagraphNumber style);

    /// Changes the styles of the paragraphs whose text lies in `range`: those of a table's cells, which no
    /// paragraph outside has. They had endParagraphs. Paragraphs that share a style may see it changed
    /// already, so that a change has to come to the same when it is made twice.
    void restyleParagraphs(Range range, FunctionRef<void(ParagraphStyle&, Range)> change);

    StyleNumber numberOf(const CharacterStyle& style);
    ParagraphNumber numberOf(const ParagraphStyle& style);

    /// The new member's index.
    std::uint32_t addList(TextList list);
    std::uint32_t addTable(TextTable table);
    /// A table's columns may be known only at its end.
    void setColumns(std::uint32_t table, std::uint32_t columns);

    std::size_t length() const;
    /// Where the text begins that endParagraphs has not seen yet.
    std::size_t paragraphsEnd() const { return m_paragraphsEnd; }
    std::u16string_view view() const;
    /// Drops the text from `length` on, and what was said of it.
    void truncate(std::size_t length);

    /// The text, with the insertions in it; they are sorted by location. Paragraphs that no endParagraphs
    /// followed have the plain style.
    AttributedString finish(const std::vector<Insertion>& insertions = {}) &&;

private:
    struct Tables;
    void insert(const std::vector<Insertion>& insertions);

    MutableString m_text;
    std::size_t m_paragraphsEnd = 0;
    std::unique_ptr<Tables> m_tables;
    AttributedString m_result;
};

} // namespace caddis
