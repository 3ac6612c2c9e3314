#include "service/EventDescriptors.h"

#include "platform/base/Format.h"
#include "platform/script/HFSPath.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace caddis {

inline namespace OstraAppleEventDescriptorExtensions {

namespace {

constexpr FourCharCode UserFields = "usrf"_code;

template <typename T> String digits(T number)
{
    char text[32];
    const auto end = std::to_chars(text, std::end(text), number).ptr;
    return String::fromLatin1({ text, static_cast<std::size_t>(end - text) });
}

String hexadecimal(const Data& data)
{
    MutableString text(data.size() * 2 + 2);
    text.append(u'<');
    for (const std::uint8_t byte : data.span()) {
        constexpr std::u16string_view Digits = u"0123456789abcdef";
        text.append(Digits[byte >> 4]).append(Digits[byte & 15]);
    }
    text.append(u'>');
    return std::move(text).take();
}

struct Converter {
    EventDescriptor operator()(Null) const { return {}; }
    EventDescriptor operator()(bool value) const
    {
        return EventDescriptor::withString(String(value ? u"1" : u"0"));
    }
    EventDescriptor operator()(const String& text) const { return EventDescriptor::withString(text); }
    EventDescriptor operator()(const Data& data) const
    {
        return EventDescriptor::withString(hexadecimal(data));
    }
    EventDescriptor operator()(const Date& date) const { return EventDescriptor::withDate(date); }
    EventDescriptor operator()(const URL& url) const
    {
        return EventDescriptor::withString(url.absoluteString());
    }
    EventDescriptor operator()(const Array& array) const { return appleEventDescriptor(array); }
    EventDescriptor operator()(const Dictionary& dictionary) const
    {
        std::vector<std::pair<RecordKey, Value>> fields;
        for (const auto& [key, value] : dictionary)
            fields.emplace_back(key, value);
        return appleEventDescriptor(fields);
    }
    template <typename Number>
    requires std::is_arithmetic_v<Number> EventDescriptor operator()(Number number) const
    {
        return EventDescriptor::withString(digits(number));
    }
};

} // namespace

EventDescriptor appleEventDescriptor(const Value& value) { return std::visit(Converter {}, value.variant()); }

EventDescriptor appleEventDescriptor(const Array& array)
{
    std::vector<EventDescriptor> items;
    items.reserve(array.size());
    for (const Value& item : array)
        items.push_back(appleEventDescriptor(item));
    return EventDescriptor::list(std::move(items));
}

EventDescriptor appleEventDescriptor(const std::vector<std::pair<RecordKey, Value>>& dictionary)
{
    std::vector<EventDescriptor::Field> fields;
    std::vector<EventDescriptor> userFields;
    for (const auto& [key, value] : dictionary) {
        if (const auto* keyword = std::get_if<FourCharCode>(&key)) {
            fields.push_back({ *keyword, appleEventDescriptor(value) });
            continue;
        }
        userFields.push_back(EventDescriptor::withString(std::get<String>(key)));
        userFields.push_back(appleEventDescriptor(value));
    }
    if (!userFields.empty())
        fields.push_back({ UserFields, EventDescriptor::list(std::move(userFields)) });
    return EventDescriptor::record(std::move(fields));
}

std::optional<String> POSIXPath(const std::optional<String>& path)
{
    if (!path || path->isEmpty() || (*path)[0] == u'/')
        return path;
    if ((*path)[0] == u'~') {
        const char* home = std::getenv("HOME");
        const bool own = path->length() == 1 || (*path)[1] == u'/';
        return home && own ? format(u"%s%@", home, path->substringFrom(1)) : *path;
    }
    if (path->view().find(u':') != std::u16string_view::npos)
        return posixPath(*path);
    return format(u"/%@", *path);
}

} // namespace OstraAppleEventDescriptorExtensions

inline namespace NSAppleEventDescriptorOstraExtensions {

std::optional<std::vector<EventDescriptor>> arrayValue(const EventDescriptor& descriptor)
{
    if (!descriptor.isList())
        return std::nullopt;
    std::vector<EventDescriptor> items;
    for (const auto& field : descriptor.fields())
        items.push_back(field.value);
    return items;
}

std::optional<std::vector<String>> arrayValueWithStrings(const EventDescriptor& descriptor)
{
    if (!descriptor.isList())
        return std::nullopt;
    std::vector<String> items;
    for (const auto& field : descriptor.fields())
        items.push_back(field.value.stringValue().value_or(String()));
    return items;
}

std::optional<std::vector<std::pair<String, EventDescriptor>>> dictionaryValue(
    const EventDescriptor& descriptor)
{
    if (!descriptor.isRecord() || descriptor.descriptorType() != "reco"_code
        || descriptor.numberOfItems() != 1)
        return std::nullopt;
    const EventDescriptor entries = descriptor.descriptorAtIndex(1);
    if (!entries.isList() || entries.numberOfItems() < 2 || entries.numberOfItems() % 2)
        return std::nullopt;
    std::vector<std::pair<String, EventDescriptor>> dictionary;
    for (std::size_t position = 1; position < entries.numberOfItems(); position += 2) {
        const String key = entries.descriptorAtIndex(position).stringValue().value_or(String());
        const EventDescriptor value = entries.descriptorAtIndex(position + 1);
        const auto known = std::ranges::find(dictionary, key, &std::pair<String, EventDescriptor>::first);
        if (known != dictionary.end())
            known->second = value;
        else
            dictionary.emplace_back(key, value);
    }
    return dictionary;
}

std::optional<std::vector<std::pair<String, String>>> dictionaryValueWithStrings(
    const EventDescriptor& descriptor)
{
    const auto values = dictionaryValue(descriptor);
    if (!values)
        return std::nullopt;
    std::vector<std::pair<String, String>> dictionary;
    for (const auto& [key, value] : *values)
        dictionary.emplace_back(key, value.stringValue().value_or(String()));
    return dictionary;
}

std::optional<Date> dateValue(const EventDescriptor& descriptor) { return descriptor.dateValue(); }

EventDescriptor insertObject(const EventDescriptor& list, const Value& object, std::size_t position)
{
    std::vector<EventDescriptor> items = arrayValue(list).value_or(std::vector<EventDescriptor>());
    EventDescriptor made = appleEventDescriptor(object);
    if (position >= 1 && position <= items.size())
        items[position - 1] = std::move(made);
    else
        items.push_back(std::move(made));
    return EventDescriptor::list(std::move(items));
}

EventDescriptor setObject(const EventDescriptor& record, const Value& object, FourCharCode keyword)
{
    std::vector<EventDescriptor::Field> fields = record.fields();
    EventDescriptor made = appleEventDescriptor(object);
    const auto known = std::ranges::find(fields, keyword, &EventDescriptor::Field::keyword);
    if (known != fields.end())
        known->value = std::move(made);
    else
        fields.push_back({ keyword, std::move(made) });
    return EventDescriptor::record(std::move(fields));
}

} // namespace NSAppleEventDescriptorOstraExtensions
} // namespace caddis
