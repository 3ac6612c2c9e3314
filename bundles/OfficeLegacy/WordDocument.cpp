// The text of a document is cut into pieces, each somewhere in the main stream; a table in the table stream
// says where ("Clx", MS-DOC 2.9.38). Before Word 97 there may be none, and the text is in one piece.

#include "bundles/OfficeLegacy/Documents.h"
#include "bundles/support/CodePage.h"
#include "bundles/support/LittleEndian.h"

namespace caddis::bundles {

namespace {

constexpr unsigned Signature = 0xA5EC;
constexpr unsigned OldSignature = 0xA5DC; // Word 6 and 95
constexpr unsigned FirstUnicodeVersion = 0xC1; // Word 97
constexpr unsigned Encrypted = 0x0100;
constexpr unsigned SecondTable = 0x0200;
constexpr std::size_t SliceSize = 64 * 1024;
constexpr unsigned CodePage = 1252;

// Characters that mean something else in a document's text (MS-DOC 2.4.1).
class TextCleaner {
public:
    explicit TextCleaner(TextSink& text)
        : m_text(text)
    {
    }

    bool append(std::u16string_view units)
    {
        std::u16string shown;
        for (const char16_t unit : units)
            add(unit, shown);
        return m_text.append(shown);
    }

private:
    void add(char16_t unit, std::u16string& shown)
    {
        switch (unit) {
        case FieldBegin:
            ++m_codes;
            ++m_fields;
            break;
        case FieldMiddle:
            m_codes -= m_codes > 0;
            break;
        case FieldEnd:
            // Without a middle there is no result.
            m_codes -= m_codes > 0 && m_codes == m_fields;
            m_fields -= m_fields > 0;
            break;
        default:
            if (m_codes == 0)
                show(unit, shown);
        }
    }
    static void show(char16_t unit, std::u16string& shown)
    {
        if (unit == Paragraph || unit == LineBreak || unit == PageBreak || unit == ColumnBreak)
            shown += u'\n';
        else if (unit == CellEnd || unit == u'\t')
            shown += u'\t';
        else if (unit == FixedHyphen)
            shown += u'\u2011';
        else if (unit >= u' ')
            shown += unit;
    }

    static constexpr char16_t CellEnd = 7, LineBreak = 11, PageBreak = 12, Paragraph = 13, ColumnBreak = 14,
                              FieldBegin = 19, FieldMiddle = 20, FieldEnd = 21, FixedHyphen = 30;

    TextSink& m_text;
    int m_codes = 0; ///< fields whose code is being read
    int m_fields = 0; ///< fields that are open
};

struct Piece {
    std::size_t offset, characters;
    bool isUtf16;
};

bool appendPiece(std::string_view main, const Piece& piece, TextCleaner& text)
{
    const std::size_t width = piece.isUtf16 ? 2 : 1;
    std::string_view rest = part(main, piece.offset, width * piece.characters);
    while (!rest.empty()) {
        const std::string_view slice = rest.substr(0, SliceSize);
        rest.remove_prefix(slice.size());
        if (!text.append(piece.isUtf16 ? textInUtf16(slice) : textInCodePage(slice, CodePage)))
            return false;
    }
    return true;
}

// The table of pieces inside a Clx: behind any number of settings, each 1 and a length, stands 2 and its own
// length.
std::string_view pieceTable(std::string_view clx)
{
    while (clx.starts_with('\1'))
        clx = part(clx, 3U + u16(clx, 1));
    return clx.starts_with('\2') ? part(clx, 5, u32(clx, 1)) : std::string_view();
}

// One more position than pieces, then the pieces: 2 bytes of flags, 4 of place, 2 more.
bool appendPieces(std::string_view main, std::string_view table, bool isOld, TextCleaner& text)
{
    constexpr std::uint32_t Compressed = 0x40000000; // 8 bits a character, the place is doubled
    constexpr std::size_t DescriptorSize = 8;
    const std::size_t count = table.size() < 4 ? 0 : (table.size() - 4) / (4 + DescriptorSize);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t begin = u32(table, 4 * i);
        const std::uint32_t end = u32(table, 4 * i + 4);
        const std::uint32_t place = u32(table, 4 * (count + 1) + DescriptorSize * i + 2);
        if (end < begin)
            break;
        const bool isNarrow = isOld || (place & Compressed) != 0;
        const std::size_t offset = isOld ? place : isNarrow ? (place & ~Compressed) / 2 : place;
        if (!appendPiece(main, { offset, end - begin, !isNarrow }, text))
            break;
    }
    return count > 0;
}

} // namespace

DocumentText readWordDocument(const CompoundFile& file, TextSink& text)
{
    const auto main = file.stream("WordDocument");
    const unsigned signature = main ? u16(*main, 0) : 0;
    if (signature != Signature && signature != OldSignature)
        return DocumentText::None;
    const unsigned flags = u16(*main, 10);
    if (flags & Encrypted)
        return DocumentText::Encrypted;
    const bool isOld = u16(*main, 2) < FirstUnicodeVersion;
    const std::string table
        = isOld ? *main : file.stream(flags & SecondTable ? "1Table" : "0Table").value_or(std::string());
    const std::size_t placeOfClx = isOld ? 0x160 : 0x1A2;
    const std::string_view clx = part(table, u32(*main, placeOfClx), u32(*main, placeOfClx + 4));
    TextCleaner cleaner(text);
    if (!appendPieces(*main, pieceTable(clx), isOld, cleaner)) {
        const std::uint32_t begin = u32(*main, 24);
        const std::uint32_t end = u32(*main, 28);
        appendPiece(*main, { begin, end > begin ? end - begin : 0, false }, cleaner);
    }
    return DocumentText::Read;
}

} // namespace caddis::bundles
