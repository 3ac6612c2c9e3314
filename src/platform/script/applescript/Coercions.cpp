#include "platform/script/applescript/Coercions.h"

#include "platform/base/MutableString.h"
#include "platform/script/HFSPath.h"
#include "platform/script/MacRoman.h"
#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/DateText.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/NumberText.h"
#include "platform/script/applescript/SourceText.h"

#include <cmath>
#include <filesystem>

namespace caddis::applescript {

namespace {

std::optional<String> textOfData(const DataObject& data)
{
    if (data.type == "utf8"_code)
        return String::fromUtf8(data.bytes.chars());
    if (data.type == "TEXT"_code)
        return stringFromMacRoman(data.bytes.chars());
    return std::nullopt;
}

// A list is joined with the first of the text item delimiters.
std::optional<String> joinedText(Interpreter& interpreter, const List& list)
{
    interpreter.checkStack();
    const auto& delimiters = languageState().textItemDelimiters;
    const String delimiter = delimiters.empty() ? String() : delimiters.front();
    MutableString out;
    for (std::size_t index = 0; index < list.count(); ++index) {
        const auto part = textOf(interpreter, list.items()[index]);
        if (!part)
            return std::nullopt;
        interpreter.heap().require((out.length() + part->length() + delimiter.length()) * 2);
        if (index)
            out.append(delimiter);
        out.append(*part);
    }
    return std::move(out).take();
}

std::optional<bool> booleanOf(Interpreter& interpreter, const Datum& value)
{
    if (value.is(Kind::Boolean))
        return value.asBoolean();
    if (value.isNumber() && (value.asReal() == 0 || value.asReal() == 1))
        return value.asReal() != 0;
    if (const auto* text = value.get<Text>()) {
        const String lower = plainName(symbolOfPlainName(text->value()));
        if (lower == u"true" || lower == u"false")
            return lower == u"true";
    }
    if (const auto* list = value.get<List>(); list && list->count() == 1)
        return booleanOf(interpreter, interpreter.value(list->items()[0]));
    return std::nullopt;
}

Datum asInteger(Interpreter& interpreter, const Datum& value)
{
    const auto number = numberOf(interpreter, value);
    if (!number)
        failCoercion(value, Symbol::Integer);
    if (number->is(Kind::Integer))
        return *number;
    return wholeIfPossible(std::nearbyint(number->asReal()));
}

std::optional<Datum> asList(Interpreter& interpreter, const Datum& value)
{
    if (value.is(Kind::List))
        return value;
    if (const auto* record = value.get<Record>()) {
        std::vector<Datum> items;
        for (const auto& field : record->fields())
            items.push_back(field.second);
        return make<List>(std::move(items));
    }
    (void)interpreter;
    return make<List>(std::vector<Datum> { value });
}

std::optional<Datum> asFile(Interpreter& interpreter, const Datum& value, Symbol wanted)
{
    if (!value.is(Kind::File) && !value.is(Kind::Text))
        return std::nullopt;
    const String path = requirePath(interpreter, value);
    std::error_code ignored;
    if (wanted == Symbol::Alias && !std::filesystem::exists(path.utf8(), ignored))
        fail(ScriptErrorNumber::FileNotFound, format(u"File %@ wasn’t found.", sourceText(value)));
    return make<FileObject>(wanted, path);
}

std::optional<Datum> asDate(const Datum& value)
{
    const auto* text = value.get<Text>();
    const auto date = text ? dateFromText(text->value(), currentDate()) : std::nullopt;
    return date ? std::optional(make<DateObject>(*date)) : std::nullopt;
}

std::optional<Datum> asUnit(Interpreter& interpreter, const Datum& value, Symbol wanted)
{
    if (const auto* unit = value.get<UnitObject>())
        return convertUnit(*unit, wanted);
    const auto number = numberOf(interpreter, value);
    return number ? std::optional(make<UnitObject>(wanted, number->asReal())) : std::nullopt;
}

std::optional<Datum> converted(Interpreter& interpreter, const Datum& value, Symbol wanted)
{
    switch (wanted) {
    case Symbol::Text:
        if (auto text = textOf(interpreter, value))
            return Datum::text(*text);
        return std::nullopt;
    case Symbol::Integer:
        return asInteger(interpreter, value);
    case Symbol::Real:
        if (const auto number = numberOf(interpreter, value))
            return Datum::real(number->asReal());
        return std::nullopt;
    case Symbol::Number:
        return numberOf(interpreter, value);
    case Symbol::Boolean:
        if (const auto yes = booleanOf(interpreter, value))
            return Datum::boolean(*yes);
        return std::nullopt;
    case Symbol::List:
        return asList(interpreter, value);
    case Symbol::Date:
        return asDate(value);
    case Symbol::Alias:
    case Symbol::File:
    case Symbol::PosixFile:
    case Symbol::FileSpecification:
        return asFile(interpreter, value, wanted == Symbol::FileSpecification ? Symbol::File : wanted);
    case Symbol::Item:
    case Symbol::Anything:
        return value;
    default:
        return isUnit(wanted) ? asUnit(interpreter, value, wanted) : std::nullopt;
    }
}

} // namespace

Datum coerce(Interpreter& interpreter, const Datum& datum, Symbol name)
{
    const Symbol wanted = canonicalClass(name);
    if (wanted == Symbol::Reference && datum.is(Kind::Reference))
        return datum;
    Datum value = interpreter.value(datum);
    if (classOf(value) == wanted)
        return value;
    auto result = converted(interpreter, value, wanted);
    // A list of one item stands for the item.
    if (const auto* list = value.get<List>(); !result && list && list->count() == 1)
        return coerce(interpreter, list->items()[0], wanted);
    if (!result)
        failCoercion(datum, wanted);
    return *std::move(result);
}

std::optional<String> textOf(Interpreter& interpreter, const Datum& datum)
{
    const Datum value = interpreter.value(datum);
    switch (value.kind()) {
    case Kind::Text:
        return value.as<Text>().value();
    case Kind::Integer:
    case Kind::Real:
        return numberText(value);
    case Kind::Unit:
        return numberText(Datum::real(value.as<UnitObject>().value));
    case Kind::Boolean:
    case Kind::Missing:
        return sourceText(value);
    case Kind::Class:
    case Kind::Constant:
        return plainName(value.asSymbol());
    case Kind::Date:
        return dateText(value.as<DateObject>().seconds);
    case Kind::List:
        return joinedText(interpreter, value.as<List>());
    case Kind::File: {
        const auto& file = value.as<FileObject>();
        std::error_code ignored;
        const bool folder
            = !file.path.view().ends_with(u'/') && std::filesystem::is_directory(file.path.utf8(), ignored);
        const String path = hfsPath(file.path);
        return folder ? format(u"%@:", path) : path;
    }
    case Kind::Application:
        return value.as<ApplicationObject>().name;
    case Kind::Data:
        return textOfData(value.as<DataObject>());
    default:
        return std::nullopt;
    }
}

String requireText(Interpreter& interpreter, const Datum& value)
{
    auto text = textOf(interpreter, value);
    if (!text)
        failCoercion(value, Symbol::Text);
    return *std::move(text);
}

std::optional<Datum> numberOf(Interpreter& interpreter, const Datum& datum)
{
    const Datum value = interpreter.value(datum);
    switch (value.kind()) {
    case Kind::Integer:
    case Kind::Real:
        return value;
    case Kind::Boolean:
        return Datum::integer(value.asBoolean() ? 1 : 0);
    case Kind::Text:
        return numberFromText(value.as<Text>().value());
    case Kind::Unit:
        return Datum::real(value.as<UnitObject>().value);
    case Kind::Class: {
        // Months and weekdays count from January and Sunday.
        const auto between = [&](Symbol first, Symbol last) {
            return value.asSymbol() >= first && value.asSymbol() <= last;
        };
        const Symbol first = between(Symbol::January, Symbol::December) ? Symbol::January
            : between(Symbol::Sunday, Symbol::Saturday)                 ? Symbol::Sunday
                                                                        : Symbol::None;
        if (first == Symbol::None)
            return std::nullopt;
        return Datum::integer(static_cast<int>(value.asSymbol()) - static_cast<int>(first) + 1);
    }
    case Kind::List:
        if (value.as<List>().count() == 1) {
            interpreter.checkStack();
            return numberOf(interpreter, value.as<List>().items()[0]);
        }
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

Datum requireNumber(Interpreter& interpreter, const Datum& value)
{
    auto number = numberOf(interpreter, value);
    if (!number)
        failCoercion(value, Symbol::Number);
    return *std::move(number);
}

std::int64_t requireInteger(Interpreter& interpreter, const Datum& value)
{
    const Datum number = requireNumber(interpreter, value);
    if (number.is(Kind::Integer))
        return number.asInteger();
    if (!(std::abs(number.asReal()) < 2147483648.0))
        fail(ScriptErrorNumber::NumberTooLarge, String(u"The number is too large."));
    return static_cast<std::int64_t>(std::nearbyint(number.asReal()));
}

bool requireBoolean(Interpreter& interpreter, const Datum& datum)
{
    const Datum value = interpreter.value(datum);
    const auto yes = booleanOf(interpreter, value);
    if (!yes)
        failCoercion(value, Symbol::Boolean);
    return *yes;
}

String requirePath(Interpreter& interpreter, const Datum& datum)
{
    const Datum value = interpreter.value(datum);
    if (const auto* file = value.get<FileObject>())
        return file->path;
    String text = requireText(interpreter, value);
    if (text.view().starts_with(u'/') || text.isEmpty())
        return text;
    return posixPath(text);
}

} // namespace caddis::applescript
