#include "platform/script/applescript/TextElements.h"

#include "platform/script/applescript/TextComparison.h"

#include <algorithm>
#include <memory>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>

namespace caddis::applescript {

namespace {

// An iterator is dear to open and cheap to point at another text.
class BreakIterator {
public:
    explicit BreakIterator(UBreakIteratorType type)
    {
        UErrorCode status = U_ZERO_ERROR;
        m_iterator.reset(ubrk_open(type, "en_US", nullptr, 0, &status));
        if (U_FAILURE(status))
            m_iterator.reset();
    }

    template <typename Visit> void each(const String& text, Visit visit)
    {
        UErrorCode status = U_ZERO_ERROR;
        if (!m_iterator)
            return;
        ubrk_setText(m_iterator.get(), text.data(), static_cast<int32_t>(text.length()), &status);
        int32_t start = ubrk_first(m_iterator.get());
        for (int32_t end = ubrk_next(m_iterator.get()); end != UBRK_DONE; end = ubrk_next(m_iterator.get())) {
            visit(Range { static_cast<std::size_t>(start), static_cast<std::size_t>(end - start) },
                ubrk_getRuleStatus(m_iterator.get()));
            start = end;
        }
    }

private:
    struct Close {
        void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
    };
    std::unique_ptr<UBreakIterator, Close> m_iterator;
};

std::vector<Range> characters(const String& text)
{
    thread_local BreakIterator iterator(UBRK_CHARACTER);
    std::vector<Range> ranges;
    iterator.each(text, [&](Range range, int32_t) {
        const bool lineEnd = range.length == 2 && text[range.location] == u'\r';
        if (lineEnd)
            ranges.push_back({ range.location, 1 });
        ranges.push_back(lineEnd ? Range { range.location + 1, 1 } : range);
    });
    return ranges;
}

// A word is a run with a letter or digit in it; an ideographic one counts for itself.
std::vector<Range> words(const String& text)
{
    thread_local BreakIterator iterator(UBRK_WORD);
    std::vector<Range> ranges;
    iterator.each(text, [&](Range range, int32_t status) {
        if (status >= UBRK_WORD_NONE_LIMIT)
            ranges.push_back(range);
    });
    return ranges;
}

// Line ends separate: a text that ends with one has an empty last paragraph. CR LF is one line end.
std::vector<Range> paragraphs(const String& text)
{
    std::vector<Range> ranges;
    std::size_t start = 0;
    for (std::size_t at = 0; at < text.length(); ++at) {
        const char16_t unit = text[at];
        if (unit != u'\r' && unit != u'\n' && unit != 0x2028 && unit != 0x2029)
            continue;
        ranges.push_back({ start, at - start });
        if (unit == u'\r' && at + 1 < text.length() && text[at + 1] == u'\n')
            ++at;
        start = at + 1;
    }
    if (text.length())
        ranges.push_back({ start, text.length() - start });
    return ranges;
}

std::vector<Range> textItems(const String& text)
{
    const auto& delimiters = languageState().textItemDelimiters;
    if (std::ranges::all_of(delimiters, [](const String& delimiter) { return delimiter.isEmpty(); }))
        return characters(text);
    std::vector<Range> ranges;
    std::size_t start = 0;
    TextSearch search(text, delimiters);
    while (const FoundRange found = search.next()) {
        ranges.push_back({ start, found.location - start });
        start = found.end();
    }
    ranges.push_back({ start, text.length() - start });
    return ranges;
}

std::uint64_t keyFor(Symbol elementClass, unsigned attributes)
{
    if (elementClass != Symbol::TextItem)
        return 0;
    return languageState().delimitersVersion << 8 | attributes;
}

const std::vector<Range>& elementsOf(Text& text, Symbol elementClass)
{
    const std::uint64_t key = keyFor(elementClass, currentAttributes());
    auto& known = text.elements();
    if (known && known->elementClass == elementClass && known->key == key)
        return known->ranges;
    Heap::current().require(text.value().length() * sizeof(Range));
    std::vector<Range> ranges;
    switch (elementClass) {
    case Symbol::Word:
        ranges = words(text.value());
        break;
    case Symbol::Paragraph:
        ranges = paragraphs(text.value());
        break;
    case Symbol::TextItem:
        ranges = textItems(text.value());
        break;
    default:
        ranges = characters(text.value());
    }
    known = std::make_unique<Text::Elements>(Text::Elements { elementClass, key, std::move(ranges) });
    return known->ranges;
}

bool isCharacter(Symbol elementClass)
{
    return elementClass == Symbol::Character || elementClass == Symbol::Item || elementClass == Symbol::Text;
}

// One unit, one character: no table needed.
bool isDirect(Text& text, Symbol elementClass) { return isCharacter(elementClass) && text.isSimple(); }

} // namespace

bool isTextElement(Symbol elementClass)
{
    return isCharacter(elementClass) || elementClass == Symbol::Word || elementClass == Symbol::Paragraph
        || elementClass == Symbol::TextItem;
}

std::size_t countTextElements(const Datum& datum, Symbol elementClass)
{
    auto& text = datum.as<Text>();
    return isDirect(text, elementClass) ? text.value().length() : elementsOf(text, elementClass).size();
}

Range textElement(const Datum& datum, Symbol elementClass, std::size_t offset)
{
    auto& text = datum.as<Text>();
    return isDirect(text, elementClass) ? Range { offset, 1 } : elementsOf(text, elementClass)[offset];
}

Datum textElements(const Datum& datum, Symbol elementClass, std::size_t first, std::size_t count)
{
    std::vector<Datum> items;
    items.reserve(count);
    const String& text = datum.as<Text>().value();
    for (std::size_t offset = first; offset < first + count; ++offset)
        items.push_back(Datum::text(text.substring(textElement(datum, elementClass, offset))));
    return make<List>(std::move(items));
}

} // namespace caddis::applescript
