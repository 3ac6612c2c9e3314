#include "platform/script/applescript/Operators.h"

#include "platform/base/MutableString.h"
#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/TextComparison.h"

#include <algorithm>

namespace caddis::applescript {

namespace {

bool sameSelector(Interpreter& interpreter, const Selector& left, const Selector& right)
{
    return left.form == right.form && left.name == right.name && areEqual(interpreter, left.key, right.key)
        && areEqual(interpreter, left.lastKey, right.lastKey);
}

bool equalLists(Interpreter& interpreter, const List& left, const List& right)
{
    if (left.count() != right.count())
        return false;
    for (std::size_t index = 0; index < left.count(); ++index) {
        if (!areEqual(interpreter, left.items()[index], right.items()[index]))
            return false;
    }
    return true;
}

bool containsFields(Interpreter& interpreter, const Record& record, const Record& part)
{
    return std::ranges::all_of(part.fields(), [&](const auto& field) {
        const Datum* value = record.find(field.first);
        return value && areEqual(interpreter, *value, field.second);
    });
}

bool equalObjects(Interpreter& interpreter, const Datum& left, const Datum& right)
{
    interpreter.checkStack();
    switch (left.kind()) {
    case Kind::Text:
        return textsAreEqual(left.as<Text>().value(), right.as<Text>().value());
    case Kind::List:
        return equalLists(interpreter, left.as<List>(), right.as<List>());
    case Kind::Record:
        return left.as<Record>().fields().size() == right.as<Record>().fields().size()
            && containsFields(interpreter, left.as<Record>(), right.as<Record>());
    case Kind::Date:
        return left.as<DateObject>().seconds == right.as<DateObject>().seconds;
    case Kind::File:
        return left.as<FileObject>().path == right.as<FileObject>().path;
    case Kind::Data:
        return left.as<DataObject>().type == right.as<DataObject>().type
            && left.as<DataObject>().bytes == right.as<DataObject>().bytes;
    case Kind::Application:
        return left.as<ApplicationObject>().name == right.as<ApplicationObject>().name;
    case Kind::Handler:
        return &left.as<HandlerObject>().code == &right.as<HandlerObject>().code;
    case Kind::Reference: {
        const auto& first = left.as<ReferenceObject>();
        const auto& second = right.as<ReferenceObject>();
        return first.container.isSameObject(second.container)
            && sameSelector(interpreter, first.selector, second.selector);
    }
    case Kind::Specifier:
        return areEqual(
                   interpreter, left.as<SpecifierObject>().container, right.as<SpecifierObject>().container)
            && sameSelector(
                interpreter, left.as<SpecifierObject>().selector, right.as<SpecifierObject>().selector);
    case Kind::Unit: {
        const auto same = convertUnit(right.as<UnitObject>(), left.as<UnitObject>().unit);
        return same && same->as<UnitObject>().value == left.as<UnitObject>().value;
    }
    default:
        return false;
    }
}

// The right operand takes the left one's kind where it can.
int order(Interpreter& interpreter, const Datum& leftDatum, const Datum& rightDatum)
{
    const Datum left = interpreter.value(leftDatum);
    const Datum right = interpreter.value(rightDatum);
    if (left.is(Kind::Text))
        return compareTexts(left.as<Text>().value(), requireText(interpreter, right));
    double first = 0;
    double second = 0;
    if (left.is(Kind::Date)) {
        const Datum date = coerce(interpreter, right, Symbol::Date);
        first = static_cast<double>(left.as<DateObject>().seconds);
        second = static_cast<double>(date.as<DateObject>().seconds);
    } else if (left.is(Kind::Unit) && right.is(Kind::Unit)) {
        const Datum same = coerce(interpreter, right, left.as<UnitObject>().unit);
        first = left.as<UnitObject>().value;
        second = same.as<UnitObject>().value;
    } else {
        first = requireNumber(interpreter, left).asReal();
        second = requireNumber(interpreter, right).asReal();
    }
    return first < second ? -1 : first > second ? 1 : 0;
}

bool matchesAt(Interpreter& interpreter, const List& list, const List& part, std::size_t start)
{
    for (std::size_t index = 0; index < part.count(); ++index) {
        if (!areEqual(interpreter, list.items()[start + index], interpreter.value(part.items()[index])))
            return false;
    }
    return true;
}

enum class Where { Anywhere, Start, End };

bool listHas(Interpreter& interpreter, const List& list, const List& part, Where where)
{
    if (part.count() > list.count())
        return false;
    const std::size_t last = list.count() - part.count();
    if (where != Where::Anywhere)
        return matchesAt(interpreter, list, part, where == Where::Start ? 0 : last);
    for (std::size_t start = 0; start <= last; ++start) {
        interpreter.step();
        if (matchesAt(interpreter, list, part, start))
            return true;
    }
    return false;
}

bool has(Interpreter& interpreter, const Datum& containerDatum, const Datum& partDatum, Where where)
{
    const Datum container = interpreter.value(containerDatum);
    const Datum part = interpreter.value(partDatum);
    if (const auto* list = container.get<List>()) {
        const Datum wanted = part.is(Kind::List) ? part : make<List>(std::vector<Datum> { part });
        return listHas(interpreter, *list, wanted.as<List>(), where);
    }
    if (const auto* record = container.get<Record>(); record && part.is(Kind::Record))
        return containsFields(interpreter, *record, part.as<Record>());
    const String text = requireText(interpreter, container);
    const String wanted = requireText(interpreter, part);
    switch (where) {
    case Where::Start:
        return textStartsWith(text, wanted);
    case Where::End:
        return textEndsWith(text, wanted);
    default:
        return textContains(text, wanted);
    }
}

Datum joinTexts(const String& left, const String& right)
{
    Heap::current().require((left.length() + right.length()) * sizeof(char16_t));
    MutableString out(left.length() + right.length());
    out.append(left).append(right);
    return Datum::text(std::move(out).take());
}

Datum joinRecords(const Record& left, const Record& right)
{
    Datum result = make<Record>(left.fields());
    for (const auto& [label, value] : right.fields()) {
        if (!left.find(label))
            result.as<Record>().set(label, value);
    }
    return result;
}

void appendItems(std::vector<Datum>& items, const Datum& value)
{
    if (const auto* list = value.get<List>())
        items.insert(items.end(), list->items().begin(), list->items().end());
    else
        items.push_back(value);
}

} // namespace

bool areEqual(Interpreter& interpreter, const Datum& left, const Datum& right)
{
    if (left.isNumber() && right.isNumber())
        return left.asReal() == right.asReal();
    if (left.kind() != right.kind())
        return false;
    if (left.isObject())
        return left.isSameObject(right) || equalObjects(interpreter, left, right);
    switch (left.kind()) {
    case Kind::Boolean:
        return left.asBoolean() == right.asBoolean();
    case Kind::Class:
        return canonicalClass(left.asSymbol()) == canonicalClass(right.asSymbol());
    case Kind::Constant:
        return left.asSymbol() == right.asSymbol();
    default:
        return true;
    }
}

bool contains(Interpreter& interpreter, const Datum& container, const Datum& part)
{
    return has(interpreter, container, part, Where::Anywhere);
}

Datum concatenate(Interpreter& interpreter, const Datum& leftDatum, const Datum& rightDatum)
{
    const Datum left = interpreter.value(leftDatum);
    const Datum right = interpreter.value(rightDatum);
    if (left.is(Kind::Text)) {
        if (const auto text = textOf(interpreter, right))
            return joinTexts(left.as<Text>().value(), *text);
    }
    if (left.is(Kind::Record) && right.is(Kind::Record))
        return joinRecords(left.as<Record>(), right.as<Record>());
    std::vector<Datum> items;
    appendItems(items, left);
    appendItems(items, right);
    return make<List>(std::move(items));
}

Datum apply(Interpreter& interpreter, Operator operation, const Datum& left, const Datum& right)
{
    switch (operation) {
    case Operator::Concatenate:
        return concatenate(interpreter, left, right);
    case Operator::Equal:
        return Datum::boolean(areEqual(interpreter, left, right));
    case Operator::NotEqual:
        return Datum::boolean(!areEqual(interpreter, left, right));
    case Operator::Less:
        return Datum::boolean(order(interpreter, left, right) < 0);
    case Operator::LessOrEqual:
        return Datum::boolean(order(interpreter, left, right) <= 0);
    case Operator::Greater:
        return Datum::boolean(order(interpreter, left, right) > 0);
    case Operator::GreaterOrEqual:
        return Datum::boolean(order(interpreter, left, right) >= 0);
    case Operator::StartsWith:
        return Datum::boolean(has(interpreter, left, right, Where::Start));
    case Operator::EndsWith:
        return Datum::boolean(has(interpreter, left, right, Where::End));
    case Operator::DoesNotStartWith:
        return Datum::boolean(!has(interpreter, left, right, Where::Start));
    case Operator::DoesNotEndWith:
        return Datum::boolean(!has(interpreter, left, right, Where::End));
    case Operator::Contains:
        return Datum::boolean(contains(interpreter, left, right));
    case Operator::DoesNotContain:
        return Datum::boolean(!contains(interpreter, left, right));
    case Operator::IsIn:
        return Datum::boolean(contains(interpreter, right, left));
    case Operator::IsNotIn:
        return Datum::boolean(!contains(interpreter, right, left));
    default:
        return arithmetic(interpreter, operation, left, right);
    }
}

} // namespace caddis::applescript
