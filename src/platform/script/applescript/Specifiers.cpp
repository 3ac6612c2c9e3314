#include "platform/script/applescript/Specifiers.h"

#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/Elements.h"
#include "platform/script/applescript/Expressions.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/RemoteObjects.h"
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
    return target ? target->asContainer(frame) : implicitTarget(frame);
}

Datum NamingSpecifier::evaluate(Frame& frame) const { return valueIn(frame, container(frame)); }

Datum NamingSpecifier::asContainer(Frame& frame) const
{
    const Datum holder = container(frame);
    const Datum named = frame.interpreter.value(holder);
    return isRemote(named) ? specifierOf(named, selector(frame)) : valueIn(frame, holder);
}

Datum NamingSpecifier::reference(Frame& frame) const
{
    const Datum holder = target ? target->reference(frame) : implicitTarget(frame);
    return isRemote(holder) ? specifierOf(holder, selector(frame))
                            : make<ReferenceObject>(holder, selector(frame));
}

Datum PropertyExpression::valueIn(Frame& frame, const Datum& container) const
{
    return getProperty(frame.interpreter, container, name);
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
    return isFileClass && key && !target && !frame.target.is(Kind::Application)
        && !frame.target.is(Kind::File) && !frame.target.is(Kind::Specifier);
}

Datum ElementExpression::fileAlone(Frame& frame) const
{
    const Datum path = frame.interpreter.value(key->evaluate(frame));
    return make<FileObject>(elementClass, requirePath(frame.interpreter, path));
}

Datum ElementExpression::evaluate(Frame& frame) const
{
    return namesFileAlone(frame) ? fileAlone(frame) : NamingSpecifier::evaluate(frame);
}

Datum ElementExpression::asContainer(Frame& frame) const
{
    return namesFileAlone(frame) ? fileAlone(frame) : NamingSpecifier::asContainer(frame);
}

Datum ElementExpression::reference(Frame& frame) const
{
    return namesFileAlone(frame) ? fileAlone(frame) : NamingSpecifier::reference(frame);
}

Datum ElementExpression::valueIn(Frame& frame, const Datum& container) const
{
    Interpreter& interpreter = frame.interpreter;
    const Datum holder = interpreter.value(container);
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
    if (!list || !(list->areElements || isRemote(holder)))
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
        if (truth(frame, *condition))
            kept.as<List>().append(item);
    }
    if (elements->form == Selector::Form::Every)
        return kept;
    return getListElement(interpreter, kept, one);
}

} // namespace caddis::applescript
