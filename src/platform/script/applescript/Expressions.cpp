#include "platform/script/applescript/Expressions.h"

#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/RemoteObjects.h"
#include "platform/script/applescript/SourceText.h"

namespace caddis::applescript {

namespace {

// A command without a result has no value to go on with.
const Datum& required(const Datum& value)
{
    if (!value.isSet())
        fail(ScriptErrorNumber::NoResult,
            String(u"No result was returned from some part of this expression."));
    return value;
}

Datum textOfCodePoints(Interpreter& interpreter, const Datum& value)
{
    const Datum points = coerce(interpreter, value, Symbol::List);
    MutableString text;
    for (const Datum& item : points.as<List>().items()) {
        const std::int64_t point = requireInteger(interpreter, item);
        if (point < 0 || point > 0x10FFFF)
            failGet(format(u"character id %d", point), Datum());
        if (point >= 0x10000)
            text.append(static_cast<char16_t>(0xD7C0 + (point >> 10)));
        text.append(static_cast<char16_t>(point >= 0x10000 ? 0xDC00 + (point & 0x3FF) : point));
    }
    return Datum::text(std::move(text).take());
}

Datum applicationNamed(Interpreter& interpreter, const String& name)
{
    return make<ApplicationObject>(name, interpreter.applications().named(name));
}

} // namespace

bool truth(Frame& frame, const Expression& condition)
{
    const Datum value = condition.evaluate(frame);
    return value.is(Kind::Boolean) ? value.asBoolean() : requireBoolean(frame.interpreter, value);
}

Datum ListExpression::evaluate(Frame& frame) const
{
    std::vector<Datum> values;
    values.reserve(items.size());
    for (const auto& item : items)
        values.push_back(required(item->evaluate(frame)));
    return make<List>(std::move(values));
}

void ListExpression::assign(Frame& frame, const Datum& datum) const
{
    const Datum value = frame.interpreter.value(datum);
    const auto* list = value.get<List>();
    if (!list)
        failCoercion(value, Symbol::List);
    if (list->count() < items.size())
        failGet(format(u"item %d", list->count() + 1), value);
    // The values are taken first: {a, b} to {b, a} exchanges.
    const std::vector<Datum> values = list->items();
    for (std::size_t index = 0; index < items.size(); ++index)
        items[index]->assign(frame, values[index]);
}

Datum RecordExpression::evaluate(Frame& frame) const
{
    std::vector<Record::Field> values;
    values.reserve(fields.size());
    for (const auto& [label, value] : fields)
        values.emplace_back(label, required(value->evaluate(frame)));
    return make<Record>(std::move(values));
}

void RecordExpression::assign(Frame& frame, const Datum& value) const
{
    for (const auto& [label, place] : fields)
        place->assign(frame, getProperty(frame.interpreter, value, label));
}

Datum BinaryExpression::evaluate(Frame& frame) const
{
    const Datum first = left->evaluate(frame);
    const Datum second = right->evaluate(frame);
    if (first.is(Kind::Integer) && second.is(Kind::Integer)) {
        if (auto result = integerResult(operation, first.asInteger(), second.asInteger()))
            return *std::move(result);
    }
    return apply(frame.interpreter, operation, required(first), required(second));
}

Datum LogicExpression::evaluate(Frame& frame) const
{
    if (truth(frame, *left) == decidingValue)
        return Datum::boolean(decidingValue);
    return Datum::boolean(truth(frame, *right));
}

Datum NotExpression::evaluate(Frame& frame) const { return Datum::boolean(!truth(frame, *operand)); }

Datum NegateExpression::evaluate(Frame& frame) const
{
    return negate(frame.interpreter, required(operand->evaluate(frame)));
}

Datum CoerceExpression::evaluate(Frame& frame) const
{
    const Datum operand = required(value->evaluate(frame));
    const Datum wanted = frame.interpreter.value(type->evaluate(frame));
    if (wanted.is(Kind::Class))
        return coerce(frame.interpreter, operand, wanted.asSymbol());
    if (wanted.is(Kind::Constant) || wanted.is(Kind::Missing))
        failCoercion(operand, wanted.is(Kind::Missing) ? Symbol::MissingValue : wanted.asSymbol());
    failCoercion(wanted, Symbol::Class);
}

Datum GetExpression::evaluate(Frame& frame) const
{
    const Datum value = frame.interpreter.value(operand->asContainer(frame));
    return value.is(Kind::Specifier) ? getRemote(frame.interpreter, value) : value;
}

Datum ObjectExpression::evaluate(Frame& frame) const
{
    Interpreter& interpreter = frame.interpreter;
    const Datum value = interpreter.value(key->evaluate(frame));
    switch (objectClass) {
    case Symbol::Application:
        return applicationNamed(interpreter, requireText(interpreter, value));
    case Symbol::PosixFile: {
        const String path = requireText(interpreter, value);
        return make<FileObject>(
            Symbol::PosixFile, path.view().starts_with(u'/') ? path : format(u"/%@", path));
    }
    case Symbol::Id:
        return textOfCodePoints(interpreter, value);
    case Symbol::Date: {
        if (!value.is(Kind::Text))
            return coerce(interpreter, value, Symbol::Date);
        try {
            return coerce(interpreter, value, Symbol::Date);
        } catch (const Failure&) {
            fail(ScriptErrorNumber::UnknownObject, format(u"Invalid date and time %@.", sourceText(value)));
        }
    }
    default:
        return coerce(interpreter, value, objectClass);
    }
}

Datum UnknownExpression::evaluate(Frame& frame) const
{
    fail(ScriptErrorNumber::CannotGet, format(u"Can’t get %@.", sourceText(frame.target)));
}

Datum deepCopy(Interpreter& interpreter, const Datum& datum)
{
    interpreter.checkStack();
    if (const auto* list = datum.get<List>()) {
        std::vector<Datum> items;
        items.reserve(list->count());
        for (const Datum& item : list->items())
            items.push_back(deepCopy(interpreter, item));
        return make<List>(std::move(items));
    }
    if (const auto* record = datum.get<Record>()) {
        std::vector<Record::Field> fields;
        for (const auto& [label, value] : record->fields())
            fields.emplace_back(label, deepCopy(interpreter, value));
        return make<Record>(std::move(fields));
    }
    if (const auto* date = datum.get<DateObject>())
        return make<DateObject>(date->seconds);
    if (auto* script = datum.get<ScriptObject>()) {
        Datum copy = make<ScriptObject>(script->program, script->code, script->enclosing());
        auto& made = copy.as<ScriptObject>();
        for (const Datum& slot : script->slots)
            made.slots[static_cast<std::size_t>(&slot - script->slots.data())]
                = slot.is(Kind::Script) ? slot : deepCopy(interpreter, slot);
        made.captures = script->captures;
        made.globals = script->globals;
        made.parent = script->parent;
        return copy;
    }
    return datum;
}

} // namespace caddis::applescript
