#include "platform/script/applescript/Access.h"

#include "platform/script/applescript/Elements.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/FileSuite.h"
#include "platform/script/applescript/Properties.h"
#include "platform/script/applescript/RemoteObjects.h"
#include "platform/script/applescript/SourceText.h"

namespace caddis::applescript {

namespace {

bool belongsToFiles(const Datum& container)
{
    return container.is(Kind::Application) || container.is(Kind::File);
}

// What is known of an application without asking it.
bool isAskedRemotely(const Datum& holder, Symbol name)
{
    const bool isKnown = name == Symbol::Name || name == Symbol::Running || name == Symbol::Class;
    return isRemote(holder) && !(isKnown && holder.is(Kind::Application));
}

Datum getElements(Interpreter& interpreter, const Datum& container, const Selector& selector)
{
    if (container.is(Kind::Text))
        return getTextElement(interpreter, container, selector);
    if (container.is(Kind::List))
        return getListElement(interpreter, container, selector);
    if (belongsToFiles(container))
        return getFileElement(interpreter, container, selector);
    if (const auto* script = container.get<ScriptObject>();
        script && selector.form == Selector::Form::Named) {
        const Datum& key = selector.key;
        if (key.is(Kind::Text))
            return getProperty(interpreter, container, symbolOfPlainName(key.as<Text>().value()));
    }
    failGet(selectorText(selector), container);
}

} // namespace

Symbol classOf(const Datum& value)
{
    switch (value.kind()) {
    case Kind::Boolean:
        return Symbol::Boolean;
    case Kind::Integer:
        return Symbol::Integer;
    case Kind::Real:
        return Symbol::Real;
    case Kind::Missing:
    case Kind::Class:
        return Symbol::Class;
    case Kind::Constant:
        return Symbol::Constant;
    case Kind::Text:
        return Symbol::Text;
    case Kind::List:
        return Symbol::List;
    case Kind::Record: {
        const Datum* own = value.as<Record>().find(Symbol::Class);
        return own && own->is(Kind::Class) ? own->asSymbol() : Symbol::Record;
    }
    case Kind::Date:
        return Symbol::Date;
    case Kind::Script:
        return Symbol::Script;
    case Kind::Handler:
        return Symbol::Handler;
    case Kind::File:
        return value.as<FileObject>().fileClass;
    case Kind::Data:
        return Symbol::Data;
    case Kind::Application:
        return Symbol::Application;
    case Kind::Unit:
        return value.as<UnitObject>().unit;
    default:
        return Symbol::Reference;
    }
}

std::optional<std::size_t> offsetOfIndex(std::int64_t index, std::size_t count)
{
    const auto signedCount = static_cast<std::int64_t>(count);
    if (index == 0 || index > signedCount || index < -signedCount)
        return std::nullopt;
    return static_cast<std::size_t>(index > 0 ? index - 1 : signedCount + index);
}

Datum get(Interpreter& interpreter, const Datum& container, const Selector& selector)
{
    interpreter.checkStack();
    if (selector.form == Selector::Form::Property)
        return getProperty(interpreter, container, selector.name);
    if (selector.form == Selector::Form::Variable) {
        const Datum* place = container.as<ScriptObject>().find(selector.name);
        return place ? *place : Datum();
    }
    const Datum holder = interpreter.value(container);
    return isRemote(holder) ? getRemote(interpreter, specifierOf(holder, selector))
                            : getElements(interpreter, holder, selector);
}

void set(Interpreter& interpreter, const Datum& container, const Selector& selector, const Datum& value)
{
    using enum Selector::Form;
    if (selector.form == Property) {
        setProperty(interpreter, container, selector.name, value);
        return;
    }
    if (selector.form == Variable) {
        if (Datum* place = container.as<ScriptObject>().find(selector.name))
            *place = value;
        return;
    }
    const Datum holder = interpreter.value(container);
    if (isRemote(holder)) {
        setRemote(interpreter, specifierOf(holder, selector), value);
        return;
    }
    if (holder.is(Kind::List)) {
        setListElement(interpreter, holder, selector, value);
        return;
    }
    fail(ScriptErrorNumber::IllegalAssignment,
        format(u"Can’t set %@ of %@ to %@.", selectorText(selector), sourceText(holder), sourceText(value)));
}

Datum getProperty(Interpreter& interpreter, const Datum& container, Symbol name)
{
    if (name == Symbol::TextItemDelimiters)
        return textItemDelimiters();
    const Datum holder = interpreter.value(container);
    // A reference's own properties; everything else is asked of what it refers to.
    if (name == Symbol::Contents)
        return holder.is(Kind::Specifier) ? getRemote(interpreter, holder) : holder;
    if (isAskedRemotely(holder, name))
        return getRemote(interpreter, specifierOf(holder, { Selector::Form::Property, name }));
    if (belongsToFiles(holder)) {
        if (auto value = fileProperty(interpreter, holder, name))
            return *std::move(value);
    }
    if (const auto* list = holder.get<List>(); list && list->areElements && name != Symbol::Length) {
        std::vector<Datum> values;
        for (const Datum& item : list->items())
            values.push_back(getProperty(interpreter, item, name));
        return make<List>(std::move(values));
    }
    if (auto value = propertyOfValue(interpreter, holder, name))
        return *std::move(value);
    failGet(sourceName(name), holder);
}

void setProperty(Interpreter& interpreter, const Datum& container, Symbol name, const Datum& value)
{
    if (name == Symbol::TextItemDelimiters) {
        setTextItemDelimiters(interpreter, value);
        return;
    }
    if (name == Symbol::Contents && container.is(Kind::Reference)) {
        const auto& reference = container.as<ReferenceObject>();
        set(interpreter, reference.container, reference.selector, value);
        return;
    }
    const Datum holder = interpreter.value(container);
    if (isRemote(holder)) {
        const bool isWhole = name == Symbol::Contents && holder.is(Kind::Specifier);
        setRemote(
            interpreter, isWhole ? holder : specifierOf(holder, { Selector::Form::Property, name }), value);
        return;
    }
    const bool done = belongsToFiles(holder) ? setFileProperty(interpreter, holder, name, value)
                                             : setPropertyOfValue(interpreter, holder, name, value);
    if (!done)
        fail(ScriptErrorNumber::IllegalAssignment,
            format(u"Can’t set %@ of %@ to %@.", sourceName(name), sourceText(holder), sourceText(value)));
}

} // namespace caddis::applescript
