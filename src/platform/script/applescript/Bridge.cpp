#include "platform/script/applescript/Bridge.h"

#include "platform/base/URL.h"
#include "platform/script/FlattenedDescriptor.h"
#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/SourceText.h"
#include "platform/script/applescript/SpecifierDescriptors.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace caddis::applescript {

namespace {

constexpr FourCharCode UserFields = "usrf"_code;

class Describer {
public:
    Describer(Interpreter& interpreter, const ApplicationTerms* terms)
        : m_interpreter(interpreter)
        , m_terms(terms)
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
            const FourCharCode code = codeOf(m_terms, TermRole::Property, label);
            const FourCharCode own
                = value.is(Kind::Class) ? codeOf(m_terms, TermRole::Class, value.asSymbol()) : 0;
            if (label == Symbol::Class && own) {
                type = own;
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

    EventDescriptor code(FourCharCode type, TermRole role, Symbol symbol) const
    {
        const FourCharCode code = codeOf(m_terms, role, symbol);
        return code ? EventDescriptor::withCode(type, code) : EventDescriptor::withString(plainName(symbol));
    }

    static EventDescriptor file(const FileObject& file)
    {
        const std::string url = URL::fileURLWithPath(file.path).absoluteString().utf8();
        return { "furl"_code, Data::copyOf(url) };
    }

    EventDescriptor scalar(const Datum& value)
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
            return code("type"_code, TermRole::Class, value.asSymbol());
        case Kind::Constant:
            return code("enum"_code, TermRole::Enumerator, value.asSymbol());
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
        case Kind::Specifier:
            return descriptorFromSpecifier(m_interpreter, value.as<SpecifierObject>());
        case Kind::Application:
            if (m_terms && value.as<ApplicationObject>().terms.get() == m_terms)
                return {};
            [[fallthrough]];
        default:
            return EventDescriptor::withString(sourceText(value));
        }
    }

    Interpreter& m_interpreter;
    const ApplicationTerms* const m_terms;
};

// Reads descriptors in the words of an application, or the language's alone.
class DescriptorReader {
public:
    explicit DescriptorReader(const Datum& application)
        : m_application(application)
        , m_terms(
              application.is(Kind::Application) ? application.as<ApplicationObject>().terms.get() : nullptr)
    {
    }

    Datum value(const EventDescriptor& descriptor) const;

private:
    Datum record(const EventDescriptor& descriptor) const;
    void addUserFields(Record& record, const EventDescriptor& list) const;
    std::optional<Datum> code(const EventDescriptor& descriptor) const;

    const Datum& m_application;
    const ApplicationTerms* const m_terms;
};

void DescriptorReader::addUserFields(Record& record, const EventDescriptor& list) const
{
    for (std::size_t position = 1; position + 1 <= list.numberOfItems(); position += 2) {
        const String label = list.descriptorAtIndex(position).stringValue().value_or(String());
        record.set(symbolOfUserName(label), value(list.descriptorAtIndex(position + 1)));
    }
}

Datum DescriptorReader::record(const EventDescriptor& descriptor) const
{
    Datum made = make<Record>();
    auto& record = made.as<Record>();
    if (descriptor.descriptorType() != "reco"_code) {
        const Symbol type = nameWithCode(m_terms, TermRole::Class, descriptor.descriptorType());
        record.set(Symbol::Class, Datum::classNamed(type));
    }
    for (const auto& [keyword, field] : descriptor.fields()) {
        if (keyword == UserFields && field.isList())
            addUserFields(record, field);
        else
            record.set(nameWithCode(m_terms, TermRole::Property, keyword), value(field));
    }
    return made;
}

std::optional<Datum> DescriptorReader::code(const EventDescriptor& descriptor) const
{
    const auto code = descriptor.codeValue();
    if (!code)
        return std::nullopt;
    if (*code == "msng"_code)
        return Datum::missing();
    const bool isConstant = descriptor.descriptorType() == "enum"_code;
    const TermRole role = isConstant ? TermRole::Enumerator : TermRole::Class;
    if (!m_terms && termWithCode(*code) == Symbol::None)
        return std::nullopt;
    const Symbol symbol = nameWithCode(m_terms, role, *code);
    return isConstant ? Datum::constant(symbol) : Datum::classNamed(symbol);
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

Datum DescriptorReader::value(const EventDescriptor& descriptor) const
{
    if (descriptor.isNull())
        return Datum::missing();
    if (descriptor.isList()) {
        Datum made = make<List>();
        for (const auto& field : descriptor.fields())
            made.as<List>().append(value(field.value));
        return made;
    }
    if (descriptor.descriptorType() == "obj "_code && m_terms) {
        if (auto specifier = specifierFromDescriptor(descriptor, m_application))
            return *std::move(specifier);
    }
    if (descriptor.isRecord())
        return record(descriptor);
    if (const auto yes = descriptor.booleanValue())
        return Datum::boolean(*yes);
    if (auto symbol = code(descriptor))
        return *std::move(symbol);
    for (const auto convert : { numberFrom, dateFrom, fileFrom }) {
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

} // namespace

EventDescriptor descriptorFromValue(
    Interpreter& interpreter, const Datum& value, const ApplicationTerms* terms)
{
    return Describer(interpreter, terms).describe(value, 0);
}

Datum valueFromDescriptor(const EventDescriptor& descriptor, const Datum& application)
{
    return DescriptorReader(application).value(descriptor);
}

} // namespace caddis::applescript
