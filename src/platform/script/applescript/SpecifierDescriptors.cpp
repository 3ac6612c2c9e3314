#include "platform/script/applescript/SpecifierDescriptors.h"

#include "platform/script/FlattenedDescriptor.h"
#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Bridge.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/RemoteObjects.h"

namespace caddis::applescript {

namespace {

using Form = Selector::Form;

const ApplicationTerms* termsOf(const Datum& container)
{
    const Datum* at = &container;
    while (const auto* specifier = at->get<SpecifierObject>())
        at = &specifier->container;
    const auto* application = at->get<ApplicationObject>();
    return application ? application->terms.get() : nullptr;
}

EventDescriptor code(FourCharCode type, FourCharCode value) { return EventDescriptor::withCode(type, value); }

// «which one» of the forms that have no key of their own.
FourCharCode ordinalOf(Form form)
{
    switch (form) {
    case Form::Every:
        return "all "_code;
    case Form::Middle:
        return "midd"_code;
    default:
        return "any "_code;
    }
}

class Describer {
public:
    Describer(Interpreter& interpreter, const SpecifierObject& specifier)
        : m_interpreter(interpreter)
        , m_specifier(specifier)
        , m_selector(specifier.selector)
        , m_terms(termsOf(specifier.container))
    {
    }

    EventDescriptor describe()
    {
        const EventDescriptor container = value(m_specifier.container);
        if (m_selector.form == Form::Beginning || m_selector.form == Form::End)
            return EventDescriptor::record(
                { { "kobj"_code, container },
                    { "kpos"_code,
                        code("enum"_code, m_selector.form == Form::End ? "end "_code : "bgng"_code) } },
                "insl"_code);
        const bool isProperty = m_selector.form == Form::Property;
        const FourCharCode wanted
            = isProperty ? "prop"_code : codeOf(m_terms, TermRole::Class, m_selector.name);
        return EventDescriptor::record(
            { { "want"_code, code("type"_code, wanted) }, { "form"_code, code("enum"_code, formCode()) },
                { "seld"_code, key() }, { "from"_code, container } },
            "obj "_code);
    }

private:
    EventDescriptor value(const Datum& datum) { return descriptorFromValue(m_interpreter, datum, m_terms); }

    FourCharCode formCode() const
    {
        switch (m_selector.form) {
        case Form::Property:
            return "prop"_code;
        case Form::Named:
            return "name"_code;
        case Form::WithId:
            return "ID  "_code;
        case Form::Range:
            return "rang"_code;
        default:
            return "indx"_code;
        }
    }

    EventDescriptor key()
    {
        switch (m_selector.form) {
        case Form::Property:
            return code("type"_code, codeOf(m_terms, TermRole::Property, m_selector.name));
        case Form::Index:
        case Form::Named:
        case Form::WithId:
            return value(m_selector.key);
        case Form::Range:
            return EventDescriptor::record(
                { { "star"_code, end(m_selector.key, m_selector.keyClass) },
                    { "stop"_code, end(m_selector.lastKey, m_selector.lastKeyClass) } },
                "rang"_code);
        default:
            return code("abso"_code, ordinalOf(m_selector.form));
        }
    }

    // An end of a range is an element of the same container, which the null descriptor stands for.
    EventDescriptor end(const Datum& key, Symbol keyClass)
    {
        Selector selector { key.is(Kind::Text) ? Form::Named : Form::Index,
            keyClass == Symbol::None ? m_selector.name : keyClass, key };
        const FourCharCode wanted = codeOf(m_terms, TermRole::Class, selector.name);
        return EventDescriptor::record(
            { { "want"_code, code("type"_code, wanted) },
                { "form"_code, code("enum"_code, selector.form == Form::Named ? "name"_code : "indx"_code) },
                { "seld"_code, value(key) }, { "from"_code, EventDescriptor() } },
            "obj "_code);
    }

    Interpreter& m_interpreter;
    const SpecifierObject& m_specifier;
    const Selector& m_selector;
    const ApplicationTerms* m_terms;
};

// The form and key of what stands in a descriptor; nil for forms without words.
std::optional<Selector> selectorFrom(const EventDescriptor& descriptor, const Datum& application)
{
    const auto& terms = application.as<ApplicationObject>().terms;
    const EventDescriptor key = descriptor.descriptorForKeyword("seld"_code);
    const FourCharCode wanted = descriptor.descriptorForKeyword("want"_code).codeValue().value_or(0);
    const Symbol name = nameWithCode(terms.get(), TermRole::Class, wanted);
    switch (descriptor.descriptorForKeyword("form"_code).codeValue().value_or(0)) {
    case "prop"_code:
        return Selector { Form::Property,
            nameWithCode(terms.get(), TermRole::Property, key.codeValue().value_or(0)) };
    case "name"_code:
        return Selector { Form::Named, name, valueFromDescriptor(key, application) };
    case "ID  "_code:
        return Selector { Form::WithId, name, valueFromDescriptor(key, application) };
    case "indx"_code:
        if (const auto index = key.int32Value())
            return Selector { Form::Index, name, Datum::number(*index) };
        break;
    default:
        return std::nullopt;
    }
    switch (key.codeValue().value_or(0)) {
    case "all "_code:
        return Selector { Form::Every, name };
    case "any "_code:
        return Selector { Form::Some, name };
    case "midd"_code:
        return Selector { Form::Middle, name };
    case "firs"_code:
        return Selector { Form::Index, name, Datum::integer(1) };
    case "last"_code:
        return Selector { Form::Index, name, Datum::integer(-1) };
    default:
        return std::nullopt;
    }
}

} // namespace

EventDescriptor descriptorFromSpecifier(Interpreter& interpreter, const SpecifierObject& specifier)
{
    std::size_t depth = 0;
    for (const SpecifierObject* at = &specifier; at; at = at->container.get<SpecifierObject>()) {
        if (++depth + 2 > MaximumDescriptorDepth)
            fail(ScriptErrorNumber::StackOverflow, String(u"The object is nested too deeply."));
    }
    interpreter.checkStack();
    return Describer(interpreter, specifier).describe();
}

std::optional<Datum> specifierFromDescriptor(const EventDescriptor& descriptor, const Datum& application)
{
    const EventDescriptor from = descriptor.descriptorForKeyword("from"_code);
    const auto container = from.isNull()       ? std::optional(application)
        : from.descriptorType() == "obj "_code ? specifierFromDescriptor(from, application)
                                               : std::nullopt;
    const auto selector = container ? selectorFrom(descriptor, application) : std::nullopt;
    return selector ? std::optional(specifierOf(*container, *selector)) : std::nullopt;
}

} // namespace caddis::applescript
