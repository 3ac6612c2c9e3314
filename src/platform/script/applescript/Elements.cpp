#include "platform/script/applescript/Elements.h"

#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Randomness.h"
#include "platform/script/applescript/SourceText.h"
#include "platform/script/applescript/TextElements.h"

namespace caddis::applescript {

namespace {

struct Span {
    std::size_t first;
    std::size_t count;
};

std::size_t offsetOf(Interpreter& interpreter, const Selector& selector, const Datum& key,
    const Datum& container, std::size_t count)
{
    const auto offset = offsetOfIndex(requireInteger(interpreter, key), count);
    if (!offset)
        failGet(selectorText(selector), container);
    return *offset;
}

// The one element that a selector names among `count`.
std::size_t singleOffset(
    Interpreter& interpreter, const Selector& selector, const Datum& container, std::size_t count)
{
    using enum Selector::Form;
    const bool possible
        = selector.form == Index || (count && (selector.form == Middle || selector.form == Some));
    if (!possible)
        failGet(selectorText(selector), container);
    if (selector.form == Middle)
        return (count - 1) / 2;
    if (selector.form == Some)
        return randomBelow(count);
    return offsetOf(interpreter, selector, selector.key, container, count);
}

// Ends in the wrong order change places.
Span spanOf(Interpreter& interpreter, const Selector& selector, const Datum& container, std::size_t count)
{
    std::size_t first = offsetOf(interpreter, selector, selector.key, container, count);
    std::size_t last = offsetOf(interpreter, selector, selector.lastKey, container, count);
    if (first > last)
        std::swap(first, last);
    return { first, last - first + 1 };
}

bool isOfClass(Interpreter& interpreter, const Datum& item, Symbol wanted)
{
    if (wanted == Symbol::Item || wanted == Symbol::Anything)
        return true;
    const Datum value = interpreter.value(item);
    return wanted == Symbol::Number ? value.isNumber()
                                    : canonicalClass(classOf(value)) == canonicalClass(wanted);
}

std::vector<Datum> itemsOfClass(Interpreter& interpreter, const List& list, Symbol wanted)
{
    std::vector<Datum> items;
    for (const Datum& item : list.items()) {
        if (isOfClass(interpreter, item, wanted))
            items.push_back(item);
    }
    return items;
}

Datum listWith(std::vector<Datum> items, const List& like)
{
    Datum made = make<List>(std::move(items));
    made.as<List>().areElements = like.areElements;
    return made;
}

Datum pickFrom(
    Interpreter& interpreter, const std::vector<Datum>& items, const Datum& list, const Selector& selector)
{
    if (selector.form == Selector::Form::Every)
        return listWith(items, list.as<List>());
    if (selector.form == Selector::Form::Range) {
        const Span span = spanOf(interpreter, selector, list, items.size());
        const auto first = items.begin() + static_cast<std::ptrdiff_t>(span.first);
        return listWith({ first, first + static_cast<std::ptrdiff_t>(span.count) }, list.as<List>());
    }
    return items[singleOffset(interpreter, selector, list, items.size())];
}

// From the start of one element to the end of another: text 1 thru word 3.
Datum textRange(Interpreter& interpreter, const Datum& text, const Selector& selector)
{
    const auto place = [&](const Datum& key, Symbol keyClass) {
        const Symbol counted = keyClass == Symbol::None ? Symbol::Character : keyClass;
        const std::size_t count = countTextElements(text, counted);
        return textElement(text, counted, offsetOf(interpreter, selector, key, text, count));
    };
    Range first = place(selector.key, selector.keyClass);
    Range last = place(selector.lastKey, selector.lastKeyClass);
    if (first.location > last.location)
        std::swap(first, last);
    return Datum::text(text.as<Text>().value().substring(
        { first.location, std::max(first.end(), last.end()) - first.location }));
}

} // namespace

Datum getListElement(Interpreter& interpreter, const Datum& datum, const Selector& selector)
{
    const auto& list = datum.as<List>();
    if (selector.name == Symbol::Item)
        return pickFrom(interpreter, list.items(), datum, selector);
    return pickFrom(interpreter, itemsOfClass(interpreter, list, selector.name), datum, selector);
}

void setListElement(
    Interpreter& interpreter, const Datum& datum, const Selector& selector, const Datum& value)
{
    auto& list = datum.as<List>();
    switch (selector.form) {
    case Selector::Form::Beginning:
        list.prepend(value);
        break;
    case Selector::Form::End:
        list.append(value);
        break;
    case Selector::Form::Every:
    case Selector::Form::Range:
        fail(ScriptErrorNumber::IllegalAssignment,
            format(u"Can’t set %@ of %@.", selectorText(selector), sourceText(datum)));
    default:
        list.setItem(singleOffset(interpreter, selector, datum, list.count()), value);
    }
}

Datum getTextElement(Interpreter& interpreter, const Datum& text, const Selector& selector)
{
    if (!isTextElement(selector.name))
        failGet(selectorText(selector), text);
    if (selector.form == Selector::Form::Range && selector.name == Symbol::Text)
        return textRange(interpreter, text, selector);
    if (selector.name == Symbol::Text && selector.form == Selector::Form::Every)
        return text;
    const std::size_t count = countTextElements(text, selector.name);
    if (selector.form == Selector::Form::Every)
        return textElements(text, selector.name, 0, count);
    if (selector.form == Selector::Form::Range) {
        const Span span = spanOf(interpreter, selector, text, count);
        return textElements(text, selector.name, span.first, span.count);
    }
    const std::size_t offset = singleOffset(interpreter, selector, text, count);
    return Datum::text(text.as<Text>().value().substring(textElement(text, selector.name, offset)));
}

std::int64_t countElements(Interpreter& interpreter, const Datum& datum, Symbol elementClass)
{
    const Datum container = interpreter.value(datum);
    std::size_t count = 0;
    if (const auto* list = container.get<List>())
        count = elementClass == Symbol::Item ? list->count()
                                             : itemsOfClass(interpreter, *list, elementClass).size();
    else if (const auto* record = container.get<Record>())
        count = record->fields().size();
    else if (container.is(Kind::Text) && isTextElement(elementClass))
        count = countTextElements(container, elementClass);
    else
        failGet(String(u"number"), container, ScriptErrorNumber::CannotGet);
    return static_cast<std::int64_t>(count);
}

} // namespace caddis::applescript
