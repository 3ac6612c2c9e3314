#include "platform/script/applescript/Specifiers.h"

#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/Elements.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Restored.h"
#include "platform/script/applescript/SourceText.h"

namespace caddis::applescript {

namespace {

Datum implicitTarget(const Frame& frame)
{
    return frame.target.isSet() ? frame.target : Datum::object(frame.self);
}

// Name, number or id: a text names an element, everything else counts.
Selector::Form formOfKey(Selector::Form form, const Datum& key)
{
    return form == Selector::Form::Index && key.is(Kind::Text) ? Selector::Form::Named : form;
}

} // namespace

Datum Specifier::container(Frame& frame) const
{
    return target ? target->evaluate(frame) : implicitTarget(frame);
}

Datum Specifier::containerReference(Frame& frame) const
{
    return target ? target->reference(frame) : implicitTarget(frame);
}

Datum PropertyExpression::evaluate(Frame& frame) const
{
    return getProperty(frame.interpreter, container(frame), name);
}

Datum PropertyExpression::reference(Frame& frame) const
{
    return make<ReferenceObject>(containerReference(frame), Selector { Selector::Form::Property, name });
}

void PropertyExpression::assign(Frame& frame, const Datum& value) const
{
    setProperty(frame.interpreter, container(frame), name, value);
}

Selector ElementExpression::selector(Frame& frame) const
{
    Selector result { form, elementClass };
    if (key) {
        result.key = frame.interpreter.value(key->evaluate(frame));
        result.form = formOfKey(form, result.key);
    }
    if (lastKey)
        result.lastKey = frame.interpreter.value(lastKey->evaluate(frame));
    result.keyClass = keyClass;
    result.lastKeyClass = lastKeyClass;
    return result;
}

// `file "a:b"` outside of everything is a file by its path.
bool ElementExpression::namesFileAlone(Frame& frame) const
{
    const bool isFileClass = elementClass == Symbol::File || elementClass == Symbol::Folder
        || elementClass == Symbol::Disk || elementClass == Symbol::DiskItem;
    return isFileClass && !target && !frame.target.is(Kind::Application) && !frame.target.is(Kind::File);
}

Datum ElementExpression::evaluate(Frame& frame) const
{
    Interpreter& interpreter = frame.interpreter;
    if (namesFileAlone(frame) && key) {
        const Datum path = interpreter.value(key->evaluate(frame));
        return make<FileObject>(elementClass, requirePath(interpreter, path));
    }
    const Datum holder = interpreter.value(container(frame));
    if (elementClass == Symbol::Item && form == Selector::Form::Index && holder.is(Kind::List)) {
        const Datum index = interpreter.value(key->evaluate(frame));
        const auto& items = holder.as<List>().items();
        if (index.is(Kind::Integer)) {
            if (const auto offset = offsetOfIndex(index.asInteger(), items.size()))
                return items[*offset];
        }
    }
    return get(interpreter, holder, selector(frame));
}

Datum ElementExpression::reference(Frame& frame) const
{
    if (namesFileAlone(frame))
        return evaluate(frame);
    return make<ReferenceObject>(containerReference(frame), selector(frame));
}

void ElementExpression::assign(Frame& frame, const Datum& value) const
{
    set(frame.interpreter, container(frame), selector(frame), value);
}

Datum FilterExpression::evaluate(Frame& frame) const
{
    Interpreter& interpreter = frame.interpreter;
    const Datum holder = interpreter.value(container(frame));
    const Datum all = get(interpreter, holder, { Selector::Form::Every, elements->elementClass });
    const auto* list = all.get<List>();
    if (!list || !list->areElements)
        failGet(
            format(u"%@ whose …", selectorText({ Selector::Form::Every, elements->elementClass })), holder);
    Selector one { elements->form, Symbol::Item };
    if (elements->key)
        one.key = interpreter.value(elements->key->evaluate(frame));
    Datum kept = make<List>();
    kept.as<List>().areElements = true;
    const Restored<Datum> outer(frame.target);
    for (const Datum& item : list->items()) {
        interpreter.step();
        frame.target = item;
        const bool fits = requireBoolean(interpreter, condition->evaluate(frame));
        if (fits)
            kept.as<List>().append(item);
    }
    if (elements->form == Selector::Form::Every)
        return kept;
    return getListElement(interpreter, kept, one);
}

} // namespace caddis::applescript
