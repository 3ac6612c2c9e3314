#include "platform/script/applescript/SourceText.h"

#include "platform/base/Format.h"
#include "platform/script/HFSPath.h"
#include "platform/script/applescript/DateText.h"
#include "platform/script/applescript/NumberText.h"
#include "platform/script/applescript/ScriptObject.h"

namespace caddis::applescript {

namespace {

constexpr unsigned MaximumDepth = 100;
constexpr std::size_t MaximumLength = 1 << 24; // A value may hold itself several times over.

enum class Digits { AsShown, All };

class Writer {
public:
    explicit Writer(Digits digits = Digits::AsShown)
        : m_digits(digits)
    {
    }

    void write(const Datum& value, unsigned depth)
    {
        if (depth > MaximumDepth || m_out.length() > MaximumLength) {
            m_out.append(u'…');
            return;
        }
        switch (value.kind()) {
        case Kind::List:
            list(value.as<List>(), depth);
            break;
        case Kind::Record:
            record(value.as<Record>(), depth);
            break;
        case Kind::Reference:
            part(value.as<ReferenceObject>(), depth);
            break;
        case Kind::Specifier:
            part(value.as<SpecifierObject>(), depth);
            break;
        default:
            m_out.append(
                value.is(Kind::Real) && m_digits == Digits::All ? exactNumberText(value) : scalar(value));
        }
    }
    void quoted(std::u16string_view text)
    {
        m_out.append(u'"');
        for (const char16_t unit : text) {
            if (unit == u'"' || unit == u'\\')
                m_out.append(u'\\');
            m_out.append(unit);
        }
        m_out.append(u'"');
    }
    void selector(const Selector& selector, unsigned depth);
    String take() { return std::move(m_out).take(); }

private:
    void list(const List& list, unsigned depth)
    {
        m_out.append(u'{');
        for (const Datum& item : list.items()) {
            if (&item != list.items().data())
                m_out.append(u", ");
            write(item, depth + 1);
        }
        m_out.append(u'}');
    }
    void record(const Record& record, unsigned depth)
    {
        m_out.append(u'{');
        for (const auto& field : record.fields()) {
            if (&field != record.fields().data())
                m_out.append(u", ");
            m_out.append(sourceName(field.first)).append(u':');
            write(field.second, depth + 1);
        }
        m_out.append(u'}');
    }
    template <typename T> void part(const T& part, unsigned depth)
    {
        selector(part.selector, depth + 1);
        if (!part.container.isSet())
            return;
        m_out.append(u" of ");
        write(part.container, depth + 1);
    }
    static String scalar(const Datum& value);

    const Digits m_digits;
    MutableString m_out;
};

String file(const FileObject& file)
{
    if (file.fileClass == Symbol::PosixFile || file.fileClass == Symbol::File)
        return format(u"file %@", quotedText(hfsPath(file.path)));
    return format(u"%@ %@", sourceName(file.fileClass), quotedText(hfsPath(file.path)));
}

String data(const DataObject& data)
{
    MutableString out;
    out.append(u"«data ").append(String::fromLatin1(codeCharacters(data.type)));
    for (const std::uint8_t byte : data.bytes.span()) {
        constexpr std::u16string_view Digits = u"0123456789ABCDEF";
        out.append(Digits[byte >> 4]).append(Digits[byte & 15]);
    }
    out.append(u"»");
    return std::move(out).take();
}

String Writer::scalar(const Datum& value)
{
    switch (value.kind()) {
    case Kind::Missing:
        return String(u"missing value");
    case Kind::Boolean:
        return String(value.asBoolean() ? u"true" : u"false");
    case Kind::Integer:
    case Kind::Real:
        return numberText(value);
    case Kind::Class:
    case Kind::Constant:
        return sourceName(value.asSymbol());
    case Kind::Text:
        return quotedText(value.as<Text>().value());
    case Kind::Date:
        return format(u"date %@", quotedText(dateText(value.as<DateObject>().seconds)));
    case Kind::Script: {
        const Symbol name = value.as<ScriptObject>().code.name;
        return name == Symbol::None ? String(u"«script»") : format(u"«script %@»", plainName(name));
    }
    case Kind::Handler:
        return format(u"«handler %@»", plainName(value.as<HandlerObject>().code.name));
    case Kind::File:
        return file(value.as<FileObject>());
    case Kind::Data:
        return data(value.as<DataObject>());
    case Kind::Application: {
        const String& name = value.as<ApplicationObject>().name;
        return name.isEmpty() ? String(u"current application") : format(u"application %@", quotedText(name));
    }
    case Kind::Unit: {
        const auto& unit = value.as<UnitObject>();
        return format(u"%@ %@", sourceName(unit.unit), numberText(Datum::real(unit.value)));
    }
    default:
        return {};
    }
}

void Writer::selector(const Selector& selector, unsigned depth)
{
    using enum Selector::Form;
    const String name = sourceName(selector.name);
    switch (selector.form) {
    case Property:
    case Variable:
        m_out.append(name);
        break;
    case Every:
        m_out.append(u"every ").append(name);
        break;
    case Middle:
        m_out.append(u"middle ").append(name);
        break;
    case Some:
        m_out.append(u"some ").append(name);
        break;
    case Beginning:
        m_out.append(u"beginning");
        break;
    case End:
        m_out.append(u"end");
        break;
    case WithId:
        m_out.append(name).append(u" id ");
        write(selector.key, depth);
        break;
    case Index:
    case Named:
        m_out.append(name).append(u' ');
        write(selector.key, depth);
        break;
    case Range:
        m_out.append(name).append(u' ');
        write(selector.key, depth);
        m_out.append(u" thru ");
        write(selector.lastKey, depth);
        break;
    }
}

} // namespace

String sourceText(const Datum& value)
{
    Writer writer;
    writer.write(value, 0);
    return writer.take();
}

String exactSourceText(const Datum& value)
{
    Writer writer(Digits::All);
    writer.write(value, 0);
    return writer.take();
}

String quotedText(std::u16string_view text)
{
    Writer writer;
    writer.quoted(text);
    return writer.take();
}

String selectorText(const Selector& selector)
{
    Writer writer;
    writer.selector(selector, 0);
    return writer.take();
}

} // namespace caddis::applescript
