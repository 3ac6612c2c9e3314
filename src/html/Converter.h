#pragma once

#include "html/Cascade.h"
#include "html/LoadedPage.h"
#include "platform/richtext/AttributedStringBuilder.h"

/// Inside this folder: the walk over a page that makes its attributed text.
///
/// It follows the platform's published converter. A block begins and ends on a line of its own; inside lists
/// plain blocks end with U+2028, so that an item stays one paragraph. White space collapses. A page may be as
/// deep as it likes: the elements that are open are a list, and below DeepestStyled elements look like the
/// one there.
namespace caddis::html {

class Converter {
public:
    explicit Converter(AttributedStringBuilder& builder)
        : m_builder(builder)
    {
    }

    /// Appends the page's text.
    void convert(const LoadedPage& page) { convert(page, 0); }
    /// The list markers, which go in at the end.
    const std::vector<AttributedStringBuilder::Insertion>& markers() const { return m_markers; }

private:
    static constexpr std::size_t DeepestStyled = 512;
    static constexpr std::size_t DeepestList = 32;
    static constexpr std::size_t DeepestTable = 16;
    static constexpr int DeepestFrame = 4;
    static constexpr std::size_t NoFrame = static_cast<std::size_t>(-1);

    // An element that is open.
    struct Frame {
        NodeIndex node = NoNode;
        NodeIndex next = NoNode; // The child to go on with.
        const css::ComputedStyle* style = nullptr;
        Tag tag = Tag::Other;
        bool isBlock = false;
        bool opensList = false;
        bool opensTable = false;
        bool opensCell = false;
        bool hasMarker = false; // Of an item: it has been given.
        std::int32_t itemNumber = 0; // Of an item.
        std::size_t start = 0; // Of its text.
        std::size_t block = NoFrame; // The innermost block, itself included.
        std::size_t item = NoFrame; // The innermost list item of the innermost list.
        double indent = 0; // Of quotations and their like around it.
        String outerLink;
    };
    struct OpenList {
        TextList list;
        std::int32_t nextItem;
        std::optional<std::uint32_t> number; // None for a list without markers, which is only blocks.
    };
    struct OpenTable {
        std::uint32_t number;
        std::size_t outerCells; // How many cells are open around it.
        std::uint32_t row = 0;
        std::uint32_t column = 0;
        std::uint32_t columns = 0;
        bool hasRow = false;
        std::vector<std::uint32_t> freeFromRow; // By column: what cells of rows above reach into.
    };
    // A page in the midst of its walk; frames inside pages put others on top.
    struct Walk {
        const LoadedPage& loaded;
        css::Cascade cascade;
        std::size_t firstFrame;
        css::ComputedStyle deepInline, deepBlock;
    };

    void convert(const LoadedPage& page, int depth);
    void enter(NodeIndex node);
    void leave();
    const css::ComputedStyle& styleOf(NodeIndex node);
    void enterBlock(Frame& frame, std::size_t index);
    void leaveBlock(const Frame& frame);
    void process(const Frame& frame);
    void quotation(bool opens);

    // Text and breaks.
    void text(std::u16string_view units);
    void preservedText(std::u16string_view units);
    void collapsedText(std::u16string_view units, css::Keyword transform, bool keepsBreaks);
    void appendUnits(std::u16string_view units);
    char16_t lastUnit() const;
    void dropSoftEnd();
    void endParagraph(bool evenIfEmpty, bool replacesSoftEnd = true);
    void endLine();
    void endLineOnce();
    void flushParagraphs();
    const CharacterStyle& characterStyle();
    ParagraphStyle paragraphStyle() const;
    void paragraphIndents(ParagraphStyle& style, const Frame& block) const;

    // Lists.
    bool isInList() const { return !m_lists.empty() && m_lists.back().number; }
    void openList(Frame& frame);
    void openItem(Frame& frame, std::size_t index);
    void markItem();

    // Tables.
    void openTable(Frame& frame);
    void closeTable();
    void openRow();
    void openCell(Frame& frame);

    // Things that are not text.
    void image(const Frame& frame);
    void object(Frame& frame);
    void control(Frame& frame);
    void nestedPage();
    bool attach(const Frame& frame);
    std::u16string_view attribute(const Frame& frame, std::u16string_view name) const;

    AttributedStringBuilder& m_builder;
    Walk* m_walk = nullptr;
    int m_depth = 0;
    std::vector<Frame> m_frames;
    std::vector<OpenList> m_lists;
    std::vector<OpenTable> m_tables;
    std::vector<TableCell> m_cells;
    std::vector<AttributedStringBuilder::Insertion> m_markers;
    String m_link;
    int m_quotations = 0;
    bool m_isSoft = false; // The last unit is a break or a blank that a break may replace.
    std::size_t m_flushed = 0; // Up to here paragraphs have their style.
    std::size_t m_attachedBytes = 0;
    std::u16string m_buffer;

    // Of the style that characters had last.
    CharacterStyle m_character;
    const css::ComputedStyle* m_characterOf = nullptr;
};

} // namespace caddis::html
