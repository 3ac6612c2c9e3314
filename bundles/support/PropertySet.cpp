// A set is: a head of 28 bytes, a format identifier of 16, the offset of the properties. There: length and
// number of the properties, for each its identifier and its offset from there; then the values, each a type
// (16 bits, and 16 of padding) and what belongs to it.

#include "bundles/support/PropertySet.h"

#include "bundles/support/CodePage.h"
#include "bundles/support/LittleEndian.h"
#include "bundles/support/Properties.h"

#include <span>

namespace caddis::bundles {

namespace {

constexpr std::size_t HeadSize = 28;
constexpr std::uint32_t MaximumProperties = 1000;
constexpr std::uint32_t CodePageIdentifier = 1;
enum Type : std::uint16_t { Int16 = 2, Int32 = 3, CodePageText = 30, Utf16Text = 31, FileTime = 64 };

struct Row { // NOLINT(clang-analyzer-optin.performance.Padding): in the order that reads well
    std::uint32_t identifier;
    const char* key;
    Form form = Form::String;
};
constexpr Row SummaryRows[] = {
    { 2, "kMDItemTitle" },
    { 3, "kMDItemSubject" },
    { 4, "kMDItemAuthors", Form::Parts },
    { 5, "kMDItemKeywords", Form::Parts },
    { 6, "kMDItemComment" },
    { 8, "kMDItemContributors", Form::Strings },
    { 12, "kMDItemContentCreationDate", Form::Date },
    { 13, "kMDItemContentModificationDate", Form::Date },
    { 14, "kMDItemNumberOfPages", Form::Integer },
    { 18, "kMDItemCreator" },
};
constexpr Row DocumentRows[] = {
    { 2, "kMDItemHeadline" },
    { 7, "kMDItemNumberOfPages", Form::Integer }, // slides
    { 15, "kMDItemOrganizations", Form::Strings },
};

class PropertySet {
public:
    explicit PropertySet(std::string_view stream)
        : m_properties(part(stream, u32(stream, HeadSize + 16)))
    {
        if (const std::string_view value = find(CodePageIdentifier); u16(value, 0) == Int16)
            m_codePage = u16(value, 4);
    }

    void set(const Row& row, Attributes& attributes) const
    {
        const std::string_view value = find(row.identifier);
        switch (u16(value, 0)) {
        case Int32:
            // Programs that did not count leave 0.
            if (row.form == Form::Integer && u32(value, 4) > 0)
                attributes.setInteger(row.key, u32(value, 4));
            break;
        case FileTime:
            if (row.form == Form::Date)
                attributes.setDate(row.key, secondsOfFileTime(u64(value, 4)));
            break;
        case CodePageText:
        case Utf16Text:
            setProperty(attributes, row.key, row.form, textOf(value).utf8());
            break;
        default:
            break;
        }
    }

private:
    /// From the property's type on.
    std::string_view find(std::uint32_t identifier) const
    {
        const std::uint32_t count = std::min(u32(m_properties, 4), MaximumProperties);
        for (std::size_t i = 0; i < count; ++i) {
            if (u32(m_properties, 8 + 8 * i) == identifier)
                return part(m_properties, u32(m_properties, 12 + 8 * i));
        }
        return {};
    }
    String textOf(std::string_view value) const
    {
        constexpr std::size_t Head = 8;
        const std::size_t length = std::min<std::size_t>(u32(value, 4), Attributes::MaximumString);
        if (u16(value, 0) == Utf16Text)
            return textInUtf16(part(value, Head, 2 * length));
        const std::string_view bytes = part(value, Head, length);
        return textInCodePage(m_codePage == Utf16CodePage ? bytes : untilZero(bytes), m_codePage);
    }

    static constexpr unsigned Utf16CodePage = 1200;

    std::string_view m_properties;
    unsigned m_codePage = 1252;
};

void setStream(
    const CompoundFile& file, std::string_view name, std::span<const Row> rows, Attributes& attributes)
{
    const auto stream = file.stream(name);
    if (!stream)
        return;
    const PropertySet set(*stream);
    for (const Row& row : rows)
        set.set(row, attributes);
}

} // namespace

void setSummaryInformation(const CompoundFile& file, Attributes& attributes)
{
    setStream(file, "\5SummaryInformation", SummaryRows, attributes);
    setStream(file, "\5DocumentSummaryInformation", DocumentRows, attributes);
}

} // namespace caddis::bundles
