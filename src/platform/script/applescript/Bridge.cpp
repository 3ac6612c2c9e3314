#include "platform/script/applescript/Bridge.h"

#include "platform/base/URL.h"
#include "platform/script/FlattenedDescriptor.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/SourceText.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace caddis::applescript {

namespace {

constexpr FourCharCode UserFields = "usrf"_code;

class Describer {
public:
    explicit Describer(Interpreter& interpreter)
        : m_interpreter(interpreter)
    {
    }

    EventDescriptor describe(const Datum& datum, std::size_t depth)
    {
        if (depth >= MaximumDescriptorDepth)
            fail(ScriptErrorNumber::StackOverflow, String(u"The value is nested too deeply."));
        m_interpreter.step();
        const Datum value = m_interpreter.value(datum);
        switch (value.kind()) {
        case Kind::List:
            return list(value.as<List>(), depth);
        case Kind::Record:
            return record(value.as<Record>(), depth);
        default:
            return scalar(value);
        }
    }

private:
    EventDescriptor list(const List& list, std::size_t depth)
    {
        std::vector<EventDescriptor> items;
        items.reserve(list.count());
        for (const Datum& item : list.items())
            items.push_back(describe(item, depth + 1));
        return EventDescriptor::list(std::move(items));
    }

    EventDescriptor record(const Record& record, std::size_t depth)
    {
        FourCharCode type = "reco"_code;
        std::vector<EventDescriptor::Field> fields;
        std::vector<EventDescriptor> userFields;
        for (const auto& [label, value] : record.fields()) {
            const FourCharCode code = codeOf(label);
            if (label == Symbol::Class && value.is(Kind::Class) && codeOf(value.asSymbol())) {
                type = codeOf(value.asSymbol());
            } else if (code) {
                fields.push_back({ code, describe(value, depth + 1) });
            } else {
                userFields.push_back(EventDescriptor::withString(plainName(label)));
                userFields.push_back(describe(value, depth + 2));
            }
        }
        if (!userFields.empty())
            fields.push_back({ UserFields, EventDescriptor::list(std::move(userFields)) });
        return EventDescriptor::record(std::move(fields), type);
    }

    static EventDescriptor code(FourCharCode type, Symbol symbol)
    {
        const FourCharCode code = codeOf(symbol);
        return code ? EventDescriptor::withCode(type, code) : EventDescriptor::withString(plainName(symbol));
    }

    static EventDescriptor file(const FileObject& file)
    {
        const std::string url = URL::fileURLWithPath(file.path).absoluteString().utf8();
        return { "furl"_code, Data::copyOf(url) };
    }

    static EventDescriptor scalar(const Datum& value)
    {
        switch (value.kind()) {
        case Kind::Unset:
            return {};
        case Kind::Missing:
            return EventDescriptor::withCode("type"_code, "msng"_code);
        case Kind::Boolean:
            return EventDescriptor::withBoolean(value.asBoolean());
        case Kind::Integer:
            return EventDescriptor::withInt32(static_cast<std::int32_t>(value.asInteger()));
        case Kind::Real:
            return EventDescriptor::withDouble(value.asReal());
        case Kind::Class:
            return code("type"_code, value.asSymbol());
        case Kind::Constant:
            return code("enum"_code, value.asSymbol());
        case Kind::Text:
            return EventDescriptor::withString(value.as<Text>().value());
        case Kind::Date: {
            const std::int64_t seconds = value.as<DateObject>().seconds;
            return { "ldt "_code, Data::copyOf({ reinterpret_cast<const char*>(&seconds), sizeof seconds }) };
        }
        case Kind::File:
            return file(value.as<FileObject>());
        case Kind::Data:
            return { value.as<DataObject>().type, value.as<DataObject>().bytes };
        case Kind::Script:
            return { "scpt"_code, Data() };
        default:
            return EventDescriptor::withString(sourceText(value));
        }
    }

    Interpreter& m_interpreter;
};

Datum recordFrom(const EventDescriptor& descriptor)
{
    Datum made = make<Record>();
    auto& record = made.as<Record>();
    if (descriptor.descriptorType() != "reco"_code) {
        if (const Symbol type = termWithCode(descriptor.descriptorType()); type != Symbol::None)
            record.set(Symbol::Class, Datum::classNamed(type));
    }
    for (const auto& [keyword, value] : descriptor.fields()) {
        if (keyword == UserFields && value.isList()) {
            for (std::size_t position = 1; position + 1 <= value.numberOfItems(); position += 2) {
                const String label = value.descriptorAtIndex(position).stringValue().value_or(String());
                record.set(
                    symbolOfUserName(label), valueFromDescriptor(value.descriptorAtIndex(position + 1)));
            }
            continue;
        }
        Symbol label = termWithCode(keyword);
        if (label == Symbol::None)
            label = symbolOfUserName(format(u"«property %s»", codeCharacters(keyword)));
        record.set(label, valueFromDescriptor(value));
    }
    return made;
}

std::optional<Datum> codeFrom(const EventDescriptor& descriptor)
{
    const auto code = descriptor.codeValue();
    if (!code)
        return std::nullopt;
    if (*code == "msng"_code)
        return Datum::missing();
    const Symbol symbol = termWithCode(*code);
    if (symbol == Symbol::None)
        return std::nullopt;
    return descriptor.descriptorType() == "enum"_code ? Datum::constant(symbol) : Datum::classNamed(symbol);
}

std::optional<Datum> numberFrom(const EventDescriptor& descriptor)
{
    switch (descriptor.descriptorType()) {
    case "shor"_code:
    case "long"_code:
    case "comp"_code:
    case "ushr"_code:
    case "magn"_code:
    case "ucom"_code:
        if (const auto number = descriptor.doubleValue())
            return std::abs(*number) < 1e15 ? Datum::number(static_cast<std::int64_t>(*number))
                                            : Datum::real(*number);
        return std::nullopt;
    case "sing"_code:
    case "doub"_code:
        if (const auto number = descriptor.doubleValue())
            return Datum::real(*number);
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

std::optional<Datum> dateFrom(const EventDescriptor& descriptor)
{
    std::int64_t seconds = 0;
    const Data data = descriptor.data();
    if (descriptor.descriptorType() != "ldt "_code || data.size() != sizeof seconds)
        return std::nullopt;
    std::memcpy(&seconds, data.bytes(), sizeof seconds);
    constexpr std::int64_t Farthest = std::int64_t { 1 } << 52;
    return make<DateObject>(std::clamp(seconds, -Farthest, Farthest));
}

std::optional<Datum> fileFrom(const EventDescriptor& descriptor)
{
    if (descriptor.descriptorType() != "furl"_code)
        return std::nullopt;
    const auto text = descriptor.stringValue();
    const auto url = text ? URL::fromString(*text) : std::nullopt;
    const auto path = url ? url->path() : std::nullopt;
    return path ? std::optional(make<FileObject>(Symbol::PosixFile, *path)) : std::nullopt;
}

} // namespace

EventDescriptor descriptorFromValue(Interpreter& interpreter, const Datum& value)
{
    return Describer(interpreter).describe(value, 0);
}

Datum valueFromDescriptor(const EventDescriptor& descriptor)
{
    if (descriptor.isNull())
        return Datum::missing();
    if (descriptor.isList()) {
        Datum made = make<List>();
        for (const auto& field : descriptor.fields())
            made.as<List>().append(valueFromDescriptor(field.value));
        return made;
    }
    if (descriptor.isRecord())
        return recordFrom(descriptor);
    if (const auto yes = descriptor.booleanValue())
        return Datum::boolean(*yes);
    for (const auto convert : { codeFrom, numberFrom, dateFrom, fileFrom }) {
        if (auto value = convert(descriptor))
            return *std::move(value);
    }
    const FourCharCode type = descriptor.descriptorType();
    const bool isText
        = type == "utxt"_code || type == "utf8"_code || type == "ut16"_code || type == "TEXT"_code;
    if (isText)
        return Datum::text(descriptor.stringValue().value_or(String()));
    return make<DataObject>(descriptor.descriptorType(), descriptor.data());
}

} // namespace caddis::applescript
