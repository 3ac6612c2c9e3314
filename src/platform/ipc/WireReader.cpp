#include "platform/ipc/Wire.h"

#include "platform/base/MutableString.h"
#include "platform/ipc/WireSupport.h"

#include <cstring>
#include <dbus/dbus.h>

namespace caddis::wire {

namespace {

// Calls visit(element) for each element of the container at `container`.
template <typename Visit> void forEach(DBusMessageIter* container, Visit visit)
{
    DBusMessageIter element = DBUS_MESSAGE_ITER_INIT_CLOSED;
    dbus_message_iter_recurse(container, &element);
    for (; dbus_message_iter_get_arg_type(&element) != DBUS_TYPE_INVALID; dbus_message_iter_next(&element))
        visit(&element);
}

template <typename T> T basic(DBusMessageIter* in)
{
    T value = {};
    dbus_message_iter_get_basic(in, &value);
    return value;
}

class Reader {
public:
    explicit Reader(DescriptorTrust trust)
        : m_trust(trust)
    {
    }

    std::optional<Value> argument(DBusMessageIter* in, std::string_view type);

private:
    Value value(DBusMessageIter* in, int depth);
    Value array(DBusMessageIter* in, int depth);
    Value dictionary(DBusMessageIter* in, int depth);
    Value tagged(DBusMessageIter* in, int depth);
    std::optional<Value> nilOrOne(DBusMessageIter* in);
    std::optional<Value> record(DBusMessageIter* in);
    String string(DBusMessageIter* in);
    Data bytes(DBusMessageIter* in);
    Data attached(DBusMessageIter* in);
    Value utf8(const Value& payload);
    Value utf16(const Value& payload);
    void charge(std::size_t bytes) { m_budget.charge(Budget::ValueCost + bytes, InvalidArgsError); }

    Budget m_budget { MaximumRead };
    Budget m_attachedText { MaximumAttachedText };
    DescriptorTrust m_trust;
};

std::optional<Value> Reader::argument(DBusMessageIter* in, std::string_view type)
{
    if (type == "av" || type == "aa{sv}")
        return nilOrOne(in);
    if (type == "(uay)")
        return record(in);
    Value result = value(in, 0);
    return type == "v" && result.is<Null>() ? std::nullopt : std::optional(std::move(result));
}

std::optional<Value> Reader::nilOrOne(DBusMessageIter* in)
{
    std::optional<Value> result;
    forEach(in, [&](DBusMessageIter* element) {
        if (result)
            fail(InvalidArgsError, u"an optional value comes twice");
        result = value(element, 0);
    });
    return result;
}

std::optional<Value> Reader::record(DBusMessageIter* in)
{
    DBusMessageIter member = DBUS_MESSAGE_ITER_INIT_CLOSED;
    dbus_message_iter_recurse(in, &member);
    const auto code = basic<std::uint32_t>(&member);
    dbus_message_iter_next(&member);
    Data contents = bytes(&member);
    if (code == NullCode && contents.isEmpty())
        return std::nullopt;
    return Array { code, std::move(contents) };
}

Value Reader::value(DBusMessageIter* in, int depth)
{
    // Each level is a variant and what stands in it; a tagged leaf ends with two more.
    if (depth > 2 * MaximumNesting + 4)
        fail(InvalidArgsError, u"the value is nested too deeply");
    charge(0);
    switch (dbus_message_iter_get_arg_type(in)) {
    case DBUS_TYPE_BOOLEAN:
        return basic<dbus_bool_t>(in) != 0;
    case DBUS_TYPE_BYTE:
        return basic<std::uint8_t>(in);
    case DBUS_TYPE_INT16:
        return basic<std::int16_t>(in);
    case DBUS_TYPE_UINT16:
        return basic<std::uint16_t>(in);
    case DBUS_TYPE_INT32:
        return basic<std::int32_t>(in);
    case DBUS_TYPE_UINT32:
        return basic<std::uint32_t>(in);
    case DBUS_TYPE_INT64:
        return basic<std::int64_t>(in);
    case DBUS_TYPE_UINT64:
        return basic<std::uint64_t>(in);
    case DBUS_TYPE_DOUBLE:
        return basic<double>(in);
    case DBUS_TYPE_STRING:
    case DBUS_TYPE_OBJECT_PATH:
    case DBUS_TYPE_SIGNATURE:
        return string(in);
    case DBUS_TYPE_UNIX_FD:
        return attached(in);
    case DBUS_TYPE_ARRAY:
        return array(in, depth + 1);
    case DBUS_TYPE_STRUCT:
        return tagged(in, depth + 1);
    case DBUS_TYPE_VARIANT:
        break;
    default:
        fail(InvalidArgsError, u"a value has a type that no value has");
    }
    DBusMessageIter inner = DBUS_MESSAGE_ITER_INIT_CLOSED;
    dbus_message_iter_recurse(in, &inner);
    return value(&inner, depth + 1);
}

Value Reader::array(DBusMessageIter* in, int depth)
{
    switch (dbus_message_iter_get_element_type(in)) {
    case DBUS_TYPE_BYTE:
        return bytes(in);
    case DBUS_TYPE_DICT_ENTRY:
        return dictionary(in, depth);
    default:
        Array values;
        forEach(in, [&](DBusMessageIter* element) { values.push_back(value(element, depth)); });
        return values;
    }
}

Value Reader::dictionary(DBusMessageIter* in, int depth)
{
    std::vector<Dictionary::Entry> entries;
    forEach(in, [&](DBusMessageIter* element) {
        DBusMessageIter member = DBUS_MESSAGE_ITER_INIT_CLOSED;
        dbus_message_iter_recurse(element, &member);
        if (dbus_message_iter_get_arg_type(&member) != DBUS_TYPE_STRING)
            fail(InvalidArgsError, u"a key is not a string");
        String key = string(&member);
        dbus_message_iter_next(&member);
        entries.push_back({ std::move(key), value(&member, depth) });
    });
    return Dictionary::adopt(std::move(entries));
}

Value Reader::tagged(DBusMessageIter* in, int depth)
{
    DBusMessageIter member = DBUS_MESSAGE_ITER_INIT_CLOSED;
    dbus_message_iter_recurse(in, &member);
    if (dbus_message_iter_get_arg_type(&member) != DBUS_TYPE_STRING)
        fail(InvalidArgsError, u"a tag is not a string");
    const std::string_view tag = basic<const char*>(&member);
    if (!dbus_message_iter_next(&member) || dbus_message_iter_get_arg_type(&member) != DBUS_TYPE_VARIANT
        || dbus_message_iter_has_next(&member))
        fail(InvalidArgsError, u"a tag is not followed by one variant");
    const Value payload = value(&member, depth);
    if (tag == "nil")
        return Null();
    if (tag == "utf8")
        return utf8(payload);
    if (tag == "utf16")
        return utf16(payload);
    if (const auto* seconds = payload.as<double>(); seconds && tag == "date")
        return Date::fromUnixSeconds(*seconds);
    const auto* text = payload.as<String>();
    if (const auto url = text && tag == "url" ? URL::fromString(*text) : std::nullopt)
        return *url;
    fail(InvalidArgsError, u"a tag is unknown or its value does not fit it");
}

Value Reader::utf8(const Value& payload)
{
    const Data* contents = payload.as<Data>();
    if (!contents)
        fail(InvalidArgsError, u"utf8 text is not data");
    m_attachedText.charge(contents->size(), InvalidArgsError);
    auto text = String::fromStrictUtf8(contents->chars());
    if (!text)
        fail(InvalidArgsError, u"utf8 text is not UTF-8");
    return std::move(*text);
}

Value Reader::utf16(const Value& payload)
{
    const Data* contents = payload.as<Data>();
    if (!contents || contents->size() % 2 != 0)
        fail(InvalidArgsError, u"utf16 text is not data of an even length");
    m_attachedText.charge(contents->size(), InvalidArgsError);
    // The bytes of an inline array may lie at any address.
    MutableString text;
    std::memcpy(text.appendUninitialized(contents->size() / 2), contents->bytes(), contents->size());
    return std::move(text).take();
}

String Reader::string(DBusMessageIter* in)
{
    const std::string_view text = basic<const char*>(in);
    charge(text.size());
    return String::fromUtf8(text);
}

Data Reader::bytes(DBusMessageIter* in)
{
    DBusMessageIter element = DBUS_MESSAGE_ITER_INIT_CLOSED;
    dbus_message_iter_recurse(in, &element);
    const char* first = nullptr;
    int count = 0;
    dbus_message_iter_get_fixed_array(&element, &first, &count);
    const auto size = static_cast<std::size_t>(count);
    charge(size);
    return size == 0 ? Data() : Data::copyOf({ first, size });
}

Data Reader::attached(DBusMessageIter* in)
{
    const Descriptor file(basic<int>(in));
    auto contents = contentsOf(file, m_trust);
    if (!contents)
        fail(InvalidArgsError, u"a descriptor is not what it may be");
    return std::move(*contents);
}

} // namespace

Arguments read(DBusMessage* message, const char* signature, DescriptorTrust trust)
{
    if (!dbus_message_has_signature(message, signature))
        fail(InvalidArgsError, u"the signature does not fit");
    Arguments values;
    Reader reader(trust);
    std::string_view types = signature;
    DBusMessageIter in = DBUS_MESSAGE_ITER_INIT_CLOSED;
    dbus_message_iter_init(message, &in);
    for (; !types.empty(); dbus_message_iter_next(&in))
        values.push_back(reader.argument(&in, nextType(types)));
    return values;
}

} // namespace caddis::wire
