#include "platform/script/applescript/Properties.h"

#include "platform/base/MutableString.h"
#include "platform/base/Utf.h"
#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/DateProperties.h"
#include "platform/script/applescript/Failure.h"

#include <numbers>

namespace caddis::applescript {

namespace {

std::optional<Datum> propertyOfList(Interpreter& interpreter, const List& list, Symbol name)
{
    const auto& items = list.items();
    switch (name) {
    case Symbol::Length:
    case Symbol::Number:
        return Datum::number(static_cast<std::int64_t>(items.size()));
    case Symbol::Rest:
        if (items.empty())
            return std::nullopt;
        interpreter.heap().require(items.size() * sizeof(Datum));
        return make<List>(std::vector<Datum>(items.begin() + 1, items.end()));
    case Symbol::Reverse:
        interpreter.heap().require(items.size() * sizeof(Datum));
        return make<List>(std::vector<Datum>(items.rbegin(), items.rend()));
    default:
        return std::nullopt;
    }
}

// The code points of a text; one alone is a number.
Datum codePoints(const String& text)
{
    std::vector<Datum> points;
    for (std::size_t index = 0; index < text.length(); ++index) {
        char32_t point = text[index];
        if (isHighSurrogate(point) && index + 1 < text.length() && isLowSurrogate(text[index + 1]))
            point = 0x10000 + ((point - 0xD800) << 10) + (text[++index] - 0xDC00U);
        points.push_back(Datum::integer(point));
    }
    return points.size() == 1 ? points[0] : make<List>(std::move(points));
}

std::optional<Datum> propertyOfText(Interpreter& interpreter, const Datum& text, Symbol name)
{
    const String& value = text.as<Text>().value();
    switch (name) {
    case Symbol::Length:
    case Symbol::Number:
        return Datum::number(countElements(interpreter, text, Symbol::Character));
    case Symbol::QuotedForm:
        return Datum::text(quotedForm(value));
    case Symbol::Id:
        return codePoints(value);
    case Symbol::PosixPath:
        return Datum::text(requirePath(interpreter, text));
    case Symbol::Reverse: {
        const std::int64_t count = countElements(interpreter, text, Symbol::Character);
        Selector every { Selector::Form::Every, Symbol::Character };
        return count ? propertyOfList(interpreter, get(interpreter, text, every).as<List>(), name)
                     : std::optional(make<List>());
    }
    default:
        return std::nullopt;
    }
}

std::optional<Datum> propertyOfScript(ScriptObject& script, Symbol name)
{
    if (name == Symbol::Parent)
        return script.parent.isSet() ? script.parent : Datum::constant(Symbol::AppleScript);
    for (ScriptObject* at = &script; at; at = at->parentScript()) {
        if (const auto slot = at->code.slotOfName.find(name); slot != at->code.slotOfName.end())
            return slotValue(*at, slot->second);
        if (const Datum* global = at->find(name); global && global->isSet())
            return *global;
    }
    if (name == Symbol::Name && script.code.name != Symbol::None)
        return Datum::text(plainName(script.code.name));
    return languageConstant(name);
}

} // namespace

std::optional<Datum> languageConstant(Symbol name)
{
    switch (name) {
    case Symbol::Pi:
        return Datum::real(std::numbers::pi);
    case Symbol::Space:
        return Datum::text(u" ");
    case Symbol::Tab:
        return Datum::text(u"\t");
    case Symbol::Return:
        return Datum::text(u"\r");
    case Symbol::Linefeed:
        return Datum::text(u"\n");
    case Symbol::Quote:
        return Datum::text(u"\"");
    case Symbol::Minutes:
        return Datum::integer(60);
    case Symbol::Hours:
        return Datum::integer(3600);
    case Symbol::Days:
        return Datum::integer(86400);
    case Symbol::Weeks:
        return Datum::integer(604800);
    case Symbol::Version:
        return Datum::text(u"2.8");
    case Symbol::Name:
        return Datum::text(u"AppleScript");
    default:
        return std::nullopt;
    }
}

std::optional<Datum> propertyOfValue(Interpreter& interpreter, const Datum& holder, Symbol name)
{
    if (const auto* record = holder.get<Record>()) {
        if (const Datum* field = record->find(name))
            return *field;
        if (name == Symbol::Length)
            return Datum::number(static_cast<std::int64_t>(record->fields().size()));
    }
    if (auto* script = holder.get<ScriptObject>(); script && name != Symbol::Class)
        return propertyOfScript(*script, name);
    if (name == Symbol::Class)
        return Datum::classNamed(classOf(holder));
    switch (holder.kind()) {
    case Kind::Text:
        return propertyOfText(interpreter, holder, name);
    case Kind::List:
        return propertyOfList(interpreter, holder.as<List>(), name);
    case Kind::Date:
        return dateProperty(holder.as<DateObject>(), name);
    case Kind::Constant:
        return holder.asSymbol() == Symbol::AppleScript ? languageConstant(name) : std::nullopt;
    case Kind::Handler:
        if (name == Symbol::Name)
            return Datum::text(plainName(holder.as<HandlerObject>().code.name));
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

bool setPropertyOfValue(Interpreter& interpreter, const Datum& holder, Symbol name, const Datum& value)
{
    if (auto* record = holder.get<Record>()) {
        if (!record->find(name))
            return false;
        record->set(name, value);
        return true;
    }
    if (auto* date = holder.get<DateObject>())
        return setDateProperty(interpreter, *date, name, value);
    auto* script = holder.get<ScriptObject>();
    if (script && name == Symbol::Parent) {
        script->parent = value;
        return true;
    }
    for (; script; script = script->parentScript()) {
        if (Datum* place = script->find(name)) {
            *place = value;
            return true;
        }
    }
    return false;
}

Datum textItemDelimiters()
{
    const auto& delimiters = languageState().textItemDelimiters;
    if (delimiters.size() == 1)
        return Datum::text(delimiters[0]);
    std::vector<Datum> items;
    items.reserve(delimiters.size());
    for (const String& delimiter : delimiters)
        items.push_back(Datum::text(delimiter));
    return make<List>(std::move(items));
}

void setTextItemDelimiters(Interpreter& interpreter, const Datum& datum)
{
    const Datum value = interpreter.value(datum);
    std::vector<String> delimiters;
    if (const auto* list = value.get<List>()) {
        for (const Datum& item : list->items())
            delimiters.push_back(requireText(interpreter, item));
    } else if (value.is(Kind::Missing)) {
        delimiters.emplace_back();
    } else {
        delimiters.push_back(requireText(interpreter, value));
    }
    languageState().textItemDelimiters = std::move(delimiters);
    ++languageState().delimitersVersion;
}

String quotedForm(const String& text)
{
    MutableString out(text.length() + 2);
    out.append(u'\'');
    for (const char16_t unit : text) {
        if (unit == u'\'')
            out.append(u"'\\''");
        else
            out.append(unit);
    }
    out.append(u'\'');
    return std::move(out).take();
}

} // namespace caddis::applescript
