// A slide show is a tree of records: version and instance (16 bits), type (16), length (32). Slides are found
// by numbers: the last edit says where its table of numbers and places is, and which edit was before it.

#include "bundles/OfficeLegacy/Documents.h"
#include "bundles/support/CodePage.h"
#include "bundles/support/LittleEndian.h"

#include <map>

namespace caddis::bundles {

namespace {

enum Type : std::uint16_t {
    Document = 0x03E8,
    SlidePersist = 0x03F3,
    OutlineTextReference = 0x0F9E,
    TextCharacters = 0x0FA0,
    TextBytes = 0x0FA8,
    SlideList = 0x0FF0,
    UserEdit = 0x0FF5,
    PersistDirectory = 0x1772,
};
enum class ListKind : std::uint8_t { Slides = 0, Notes = 2 };

constexpr std::size_t HeadSize = 8;
constexpr int MaximumDepth = 32;
constexpr std::size_t MaximumRecords = 4'000'000;
constexpr std::size_t MaximumEdits = 10'000;
constexpr std::uint32_t EncryptedToken = 0xF3D1C4DF;

struct Record {
    std::string_view bytes; ///< empty when there is none

    unsigned type() const { return u16(bytes, 2); }
    unsigned instance() const { return u16(bytes, 0) >> 4U; }
    bool isContainer() const { return (u16(bytes, 0) & 0xFU) == 0xF; }
    std::string_view body() const { return part(bytes, HeadSize); }
};

Record recordAt(std::string_view stream, std::size_t offset)
{
    const std::string_view head = part(stream, offset);
    return { head.size() < HeadSize ? std::string_view()
                                    : part(head, 0, HeadSize + std::size_t(u32(head, 4))) };
}

class SlideShow {
public:
    SlideShow(std::string_view stream, TextSink& text)
        : m_stream(stream)
        , m_text(text)
    {
    }

    void read(std::uint32_t lastEdit)
    {
        const Record document = recordAt(m_stream, placeOf(readEdits(lastEdit)));
        if (document.type() != Document)
            return;
        readList(document, ListKind::Slides);
        readList(document, ListKind::Notes);
    }

private:
    // Returns the number of the document. Edits lie one before the other, so each is read once.
    std::uint32_t readEdits(std::uint32_t offset)
    {
        std::uint32_t document = 0;
        Record edit = recordAt(m_stream, offset);
        for (std::size_t count = 0; edit.type() == UserEdit && count < MaximumEdits; ++count) {
            if (document == 0)
                document = u32(edit.body(), 16);
            readPlaces(recordAt(m_stream, u32(edit.body(), 12)));
            const std::uint32_t before = u32(edit.body(), 8);
            if (before == 0 || before >= offset)
                break;
            offset = before;
            edit = recordAt(m_stream, offset);
        }
        return document;
    }
    // Runs: the first number in 20 bits and how many follow each other in 12, then the places.
    void readPlaces(const Record& table)
    {
        if (table.type() != PersistDirectory)
            return;
        const std::string_view body = table.body();
        for (std::size_t at = 0; at + 4 <= body.size() && take();) {
            const std::uint32_t first = u32(body, at) & 0xFFFFFU;
            const std::uint32_t count = u32(body, at) >> 20U;
            at += 4;
            for (std::uint32_t i = 0; i < count && at + 4 <= body.size(); ++i, at += 4)
                m_places.try_emplace(first + i, u32(body, at)); // the newest edit counts
        }
    }
    std::size_t placeOf(std::uint32_t number) const
    {
        const auto found = m_places.find(number);
        return found == m_places.end() ? m_stream.size() : found->second;
    }

    template <typename Visit> void forEachChild(std::string_view body, Visit visit)
    {
        for (Record child = recordAt(body, 0); !child.bytes.empty() && take() && !m_text.isFull();
             child = recordAt(body, 0)) {
            visit(child);
            body.remove_prefix(child.bytes.size());
        }
    }

    // A list names slides; behind each name stand the texts of its placeholders, which the slide refers to.
    void readList(const Record& document, ListKind kind)
    {
        forEachChild(document.body(), [&](const Record& list) {
            if (list.type() != SlideList || list.instance() != static_cast<unsigned>(kind))
                return;
            std::optional<std::uint32_t> slide;
            forEachChild(list.body(), [&](const Record& record) {
                if (record.type() == SlidePersist) {
                    endSlide(slide);
                    slide = u32(record.body(), 0);
                } else if (record.type() == TextCharacters || record.type() == TextBytes) {
                    m_placeholders.push_back(record);
                }
            });
            endSlide(slide);
        });
    }
    void endSlide(std::optional<std::uint32_t> number)
    {
        if (number)
            readShapes(recordAt(m_stream, placeOf(*number)), 0);
        for (const Record& placeholder : m_placeholders)
            appendText(placeholder); // those that no shape has shown
        m_placeholders.clear();
        m_text.endLine();
    }
    void readShapes(const Record& record, int depth)
    {
        if (record.isContainer() && depth < MaximumDepth) {
            forEachChild(record.body(), [&](const Record& child) { readShapes(child, depth + 1); });
        } else if (record.type() == OutlineTextReference) {
            if (const std::uint32_t index = u32(record.body(), 0); index < m_placeholders.size())
                appendText(std::exchange(m_placeholders[index], {}));
        } else {
            appendText(record);
        }
    }
    void appendText(const Record& record)
    {
        constexpr unsigned Latin1 = 28591; // the lower halves of UTF-16
        if (record.type() != TextCharacters && record.type() != TextBytes)
            return;
        const String text = record.type() == TextCharacters ? textInUtf16(record.body())
                                                            : textInCodePage(record.body(), Latin1);
        std::u16string shown(text.view());
        for (char16_t& unit : shown) {
            if (unit == u'\r' || unit == u'\v')
                unit = u'\n';
        }
        m_text.append(shown);
        m_text.endLine();
    }
    // Places may lead to the same records over and over.
    bool take() { return ++m_records <= MaximumRecords; }

    std::string_view m_stream;
    TextSink& m_text;
    std::map<std::uint32_t, std::uint32_t> m_places;
    std::vector<Record> m_placeholders;
    std::size_t m_records = 0;
};

} // namespace

DocumentText readSlideShow(const CompoundFile& file, TextSink& text)
{
    const auto stream = file.stream("PowerPoint Document");
    if (!stream)
        return DocumentText::None;
    const std::string user = file.stream("Current User").value_or(std::string());
    if (u32(user, 12) == EncryptedToken)
        return DocumentText::Encrypted;
    SlideShow(*stream, text).read(u32(user, 16));
    return DocumentText::Read;
}

} // namespace caddis::bundles
