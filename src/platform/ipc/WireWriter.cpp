#include "platform/ipc/Wire.h"

#include "platform/ipc/WireSupport.h"

#include <algorithm>
#include <dbus/dbus.h>
#include <new>

namespace caddis::wire {

namespace {

// libdbus answers FALSE only when there is no memory: everything else that it could refuse is checked before.
// It ends the process when it is handed a string that is not UTF-8.
void need(dbus_bool_t done)
{
    if (!done)
        throw std::bad_alloc();
}

// An open container; abandoned when an exception passes before close().
class Container {
public:
    Container(DBusMessageIter* parent, int type, const char* contents)
        : m_parent(parent)
    {
        need(dbus_message_iter_open_container(parent, type, contents, &m_iter));
    }
    ~Container() { dbus_message_iter_abandon_container_if_open(m_parent, &m_iter); }
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    DBusMessageIter* iter() { return &m_iter; }
    void close() { need(dbus_message_iter_close_container(m_parent, &m_iter)); }

private:
    DBusMessageIter* m_parent;
    DBusMessageIter m_iter = DBUS_MESSAGE_ITER_INIT_CLOSED;
};

std::span<const std::uint8_t> bytesOf(std::string_view text)
{
    return { reinterpret_cast<const std::uint8_t*>(text.data()), text.size() };
}

// UTF-8 as D-Bus wants it: without NUL.
std::string dbusText(const String& text)
{
    std::string bytes = text.utf8();
    std::size_t nul = 0;
    while ((nul = bytes.find('\0', nul)) != bytes.npos)
        bytes.replace(nul, 1, "\xEF\xBF\xBD");
    return bytes;
}

bool fitsDBusText(const String& text)
{
    return text.view().find(u'\0') == std::u16string_view::npos && text.isWellFormed();
}

class Writer {
public:
    explicit Writer(Descriptors descriptors)
        : m_descriptorsLeft(descriptors == Descriptors::Attached ? DescriptorsPerMessage : 0)
    {
    }

    void argument(DBusMessageIter* out, std::string_view type, const std::optional<Value>& value);

private:
    void nilOrOne(DBusMessageIter* out, const char* type, const std::optional<Value>& value);
    void record(DBusMessageIter* out, const std::optional<Value>& value);
    void variant(DBusMessageIter* out, const Value& value, int depth);
    void text(DBusMessageIter* out, const String& value);
    void data(DBusMessageIter* out, std::span<const std::uint8_t> bytes);
    void array(DBusMessageIter* out, const Array& values, int depth);
    void dictionary(DBusMessageIter* out, const Dictionary& entries, int depth);

    bool attached(DBusMessageIter* out, std::span<const std::uint8_t> bytes);
    void bytes(DBusMessageIter* out, std::span<const std::uint8_t> bytes);
    void string(DBusMessageIter* out, const std::string& utf8);
    void charge(std::size_t bytes) { m_budget.charge(Budget::ValueCost + bytes, LimitsExceededError); }

    template <typename T> void basic(DBusMessageIter* out, int type, T value)
    {
        charge(0);
        need(dbus_message_iter_append_basic(out, type, &value));
    }
    // A variant of one type, whose contents `fill` appends.
    template <typename Fill> void variantOf(DBusMessageIter* out, const char* type, Fill fill)
    {
        charge(0);
        Container inner(out, DBUS_TYPE_VARIANT, type);
        fill(inner.iter());
        inner.close();
    }
    // A variant of (sv): the tag, and a variant that `fill` appends.
    template <typename Fill> void tagged(DBusMessageIter* out, const char* tag, Fill fill)
    {
        variantOf(out, "(sv)", [&](DBusMessageIter* outer) {
            Container pair(outer, DBUS_TYPE_STRUCT, nullptr);
            need(dbus_message_iter_append_basic(pair.iter(), DBUS_TYPE_STRING, &tag));
            fill(pair.iter());
            pair.close();
        });
    }

    Budget m_budget { MaximumWritten };
    int m_descriptorsLeft;
};

template <typename T> const T& expect(const Value* value)
{
    const T* wanted = value ? value->as<T>() : nullptr;
    if (!wanted)
        fail(InvalidArgsError, u"a value is not of the type that the signature names");
    return *wanted;
}

template <typename T> const T& expect(const std::optional<Value>& value)
{
    return expect<T>(value ? &*value : nullptr);
}

void Writer::argument(DBusMessageIter* out, std::string_view type, const std::optional<Value>& value)
{
    if (type == "v")
        variant(out, value.value_or(Null()), 0);
    else if (type == "x")
        basic(out, DBUS_TYPE_INT64, expect<std::int64_t>(value));
    else if (type == "b")
        basic(out, DBUS_TYPE_BOOLEAN, dbus_bool_t(expect<bool>(value)));
    else if (type == "s")
        string(out, dbusText(expect<String>(value)));
    else if (type == "(uay)")
        record(out, value);
    else if (type == "av")
        nilOrOne(out, "v", value);
    else if (type == "aa{sv}")
        nilOrOne(out, "a{sv}", value);
    else if (type == "a{sv}")
        dictionary(out, expect<Dictionary>(value), 0);
    else
        fail(InvalidArgsError, u"the signature names a type that is not written");
}

void Writer::nilOrOne(DBusMessageIter* out, const char* type, const std::optional<Value>& value)
{
    Container list(out, DBUS_TYPE_ARRAY, type);
    if (value)
        argument(list.iter(), type, value);
    list.close();
}

void Writer::record(DBusMessageIter* out, const std::optional<Value>& value)
{
    std::uint32_t code = NullCode;
    Data contents;
    if (value) {
        const auto& pair = expect<Array>(value);
        if (pair.size() != 2 || !std::in_range<std::uint32_t>(expect<std::int64_t>(&pair[0])))
            fail(InvalidArgsError, u"a record is a 32-bit code and data");
        code = static_cast<std::uint32_t>(*pair[0].as<std::int64_t>());
        contents = expect<Data>(&pair[1]);
    }
    Container record(out, DBUS_TYPE_STRUCT, nullptr);
    basic(record.iter(), DBUS_TYPE_UINT32, code);
    bytes(record.iter(), contents.span());
    record.close();
}

void Writer::variant(DBusMessageIter* out, const Value& value, int depth)
{
    if (depth > MaximumNesting)
        fail(LimitsExceededError, u"the value is nested too deeply");
    const auto number = [&](const char* type, auto bits) {
        variantOf(out, type, [&](DBusMessageIter* inner) { basic(inner, *type, bits); });
    };
    const auto tag = [&](const char* name, const Value& payload) {
        tagged(out, name, [&](DBusMessageIter* inner) { variant(inner, payload, depth); });
    };
    if (const auto* boolean = value.as<bool>())
        number(DBUS_TYPE_BOOLEAN_AS_STRING, dbus_bool_t(*boolean));
    else if (const auto* integer = value.as<std::int64_t>())
        number(DBUS_TYPE_INT64_AS_STRING, *integer);
    else if (const auto* large = value.as<std::uint64_t>())
        number(DBUS_TYPE_UINT64_AS_STRING, *large);
    else if (const auto* single = value.as<float>())
        number(DBUS_TYPE_DOUBLE_AS_STRING, double(*single));
    else if (const auto* precise = value.as<double>())
        number(DBUS_TYPE_DOUBLE_AS_STRING, *precise);
    else if (const auto* string = value.as<String>())
        text(out, *string);
    else if (const auto* contents = value.as<Data>())
        data(out, contents->span());
    else if (const auto* date = value.as<Date>())
        tag("date", date->unixSeconds());
    else if (const auto* url = value.as<URL>())
        tag("url", url->absoluteString());
    else if (const auto* values = value.as<Array>())
        variantOf(out, "av", [&](DBusMessageIter* inner) { array(inner, *values, depth + 1); });
    else if (const auto* entries = value.as<Dictionary>())
        variantOf(out, "a{sv}", [&](DBusMessageIter* inner) { dictionary(inner, *entries, depth + 1); });
    else
        tag("nil", false);
}

void Writer::text(DBusMessageIter* out, const String& value)
{
    if (value.length() > MaximumAttachedText / 2)
        fail(LimitsExceededError, u"the text is too long");
    if (!fitsDBusText(value)) {
        const std::string_view units(reinterpret_cast<const char*>(value.data()), 2 * value.length());
        tagged(out, "utf16", [&](DBusMessageIter* inner) { data(inner, bytesOf(units)); });
        return;
    }
    const std::string utf8 = value.utf8();
    if (utf8.size() > InlineBytes && m_descriptorsLeft > 0)
        tagged(out, "utf8", [&](DBusMessageIter* inner) { data(inner, bytesOf(utf8)); });
    else
        variantOf(out, "s", [&](DBusMessageIter* inner) { string(inner, utf8); });
}

void Writer::data(DBusMessageIter* out, std::span<const std::uint8_t> contents)
{
    if (contents.size() > InlineBytes && attached(out, contents))
        return;
    variantOf(out, "ay", [&](DBusMessageIter* inner) { bytes(inner, contents); });
}

bool Writer::attached(DBusMessageIter* out, std::span<const std::uint8_t> contents)
{
    if (m_descriptorsLeft == 0)
        return false;
    if (contents.size() > MaximumSharedBytes)
        fail(LimitsExceededError, u"the data is too long");
    const Descriptor file = sealedCopyOf(contents);
    if (!file.isOpen())
        return false;
    --m_descriptorsLeft;
    variantOf(out, "h", [&](DBusMessageIter* inner) { basic(inner, DBUS_TYPE_UNIX_FD, file.number()); });
    return true;
}

void Writer::bytes(DBusMessageIter* out, std::span<const std::uint8_t> contents)
{
    charge(contents.size());
    Container array(out, DBUS_TYPE_ARRAY, DBUS_TYPE_BYTE_AS_STRING);
    const std::uint8_t* first = contents.data();
    need(dbus_message_iter_append_fixed_array(
        array.iter(), DBUS_TYPE_BYTE, &first, static_cast<int>(contents.size())));
    array.close();
}

void Writer::string(DBusMessageIter* out, const std::string& utf8)
{
    charge(utf8.size());
    const char* first = utf8.c_str();
    need(dbus_message_iter_append_basic(out, DBUS_TYPE_STRING, &first));
}

void Writer::array(DBusMessageIter* out, const Array& values, int depth)
{
    Container list(out, DBUS_TYPE_ARRAY, "v");
    for (const Value& value : values)
        variant(list.iter(), value, depth);
    list.close();
}

// A key is always a plain string: what such a string cannot hold becomes U+FFFD.
void Writer::dictionary(DBusMessageIter* out, const Dictionary& entries, int depth)
{
    Container list(out, DBUS_TYPE_ARRAY, "{sv}");
    for (const auto& [key, value] : entries) {
        Container entry(list.iter(), DBUS_TYPE_DICT_ENTRY, nullptr);
        string(entry.iter(), dbusText(key));
        variant(entry.iter(), value, depth);
        entry.close();
    }
    list.close();
}

} // namespace

void write(DBusMessage* message, const char* signature, const Arguments& values, Descriptors descriptors)
{
    DBusMessageIter out = DBUS_MESSAGE_ITER_INIT_CLOSED;
    dbus_message_iter_init_append(message, &out);
    Writer writer(descriptors);
    std::string_view types = signature;
    for (const auto& value : values) {
        if (types.empty())
            fail(InvalidArgsError, u"there are more values than the signature has types");
        writer.argument(&out, nextType(types), value);
    }
    if (!types.empty())
        fail(InvalidArgsError, u"there are fewer values than the signature has types");
}

} // namespace caddis::wire
