#include "platform/script/EventDescriptor.h"

#include "platform/base/MutableString.h"
#include "platform/script/FlattenedDescriptor.h"
#include "platform/script/LongDateTime.h"
#include "platform/script/MacRoman.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace caddis {

namespace {

template <typename T> Data bytesOf(T value)
{
    return Data::copyOf({ reinterpret_cast<const char*>(&value), sizeof value });
}

template <typename T> std::optional<T> read(const Data& data)
{
    T value;
    if (data.size() != sizeof value)
        return std::nullopt;
    std::memcpy(&value, data.bytes(), sizeof value);
    return value;
}

template <typename T> std::optional<double> readNumber(const Data& data)
{
    const auto value = read<T>(data);
    return value ? std::optional(static_cast<double>(*value)) : std::nullopt;
}

std::optional<double> numberInText(const String& text)
{
    const std::string bytes = text.utf8();
    double number = 0;
    const auto [end, error] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), number);
    if (error != std::errc() || end != bytes.data() + bytes.size())
        return std::nullopt;
    return number;
}

std::optional<double> scalarNumber(FourCharCode type, const Data& data)
{
    switch (type) {
    case "shor"_code:
        return readNumber<std::int16_t>(data);
    case "long"_code:
        return readNumber<std::int32_t>(data);
    case "comp"_code:
        return readNumber<std::int64_t>(data);
    case "ushr"_code:
        return readNumber<std::uint16_t>(data);
    case "magn"_code:
        return readNumber<std::uint32_t>(data);
    case "ucom"_code:
        return readNumber<std::uint64_t>(data);
    case "sing"_code:
        return readNumber<float>(data);
    case "doub"_code:
        return readNumber<double>(data);
    default:
        return std::nullopt;
    }
}

String textFromNumber(double number)
{
    char digits[32];
    const bool whole = number == std::floor(number) && std::abs(number) < 1e15;
    const auto end = whole ? std::to_chars(digits, std::end(digits), static_cast<std::int64_t>(number)).ptr
                           : std::to_chars(digits, std::end(digits), number).ptr;
    return String::fromLatin1({ digits, static_cast<std::size_t>(end - digits) });
}

// UTF-16 data whose order its mark tells; without one it is big-endian.
String textFromMarkedUtf16(const Data& data)
{
    const auto bytes = data.span();
    const bool little = bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE;
    const bool marked = little || (bytes.size() >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF);
    MutableString text(bytes.size() / 2);
    for (std::size_t at = marked ? 2 : 0; at + 1 < bytes.size(); at += 2)
        text.append(
            static_cast<char16_t>(little ? bytes[at] | bytes[at + 1] << 8 : bytes[at] << 8 | bytes[at + 1]));
    return std::move(text).take();
}

String textFromUnits(const Data& data)
{
    MutableString text;
    const std::size_t count = data.size() / 2;
    if (count)
        std::memcpy(text.appendUninitialized(count), data.bytes(), count * 2);
    return std::move(text).take();
}

std::optional<String> scalarText(FourCharCode type, const Data& data)
{
    switch (type) {
    case "utxt"_code:
        return textFromUnits(data);
    case "ut16"_code:
        return textFromMarkedUtf16(data);
    case "utf8"_code:
    case "furl"_code:
    case "isot"_code:
        return String::fromUtf8(data.chars());
    case "TEXT"_code:
        return stringFromMacRoman(data.chars());
    default:
        return std::nullopt;
    }
}

} // namespace

EventDescriptor EventDescriptor::withBoolean(bool value)
{
    return { value ? "true"_code : "fals"_code, Data() };
}

EventDescriptor EventDescriptor::withInt32(std::int32_t value) { return { "long"_code, bytesOf(value) }; }

EventDescriptor EventDescriptor::withDouble(double value) { return { "doub"_code, bytesOf(value) }; }

EventDescriptor EventDescriptor::withString(const String& text)
{
    return { "utxt"_code,
        Data::copyOf({ reinterpret_cast<const char*>(text.data()), text.length() * sizeof(char16_t) }) };
}

EventDescriptor EventDescriptor::withCode(FourCharCode type, FourCharCode code)
{
    return { type, bytesOf(code) };
}

EventDescriptor EventDescriptor::withDate(const Date& date)
{
    return { "ldt "_code, bytesOf(longDateTimeFromDate(date)) };
}

EventDescriptor EventDescriptor::list(std::vector<EventDescriptor> items)
{
    std::vector<Field> fields;
    fields.reserve(items.size());
    for (EventDescriptor& item : items)
        fields.push_back({ 0, std::move(item) });
    EventDescriptor result("list"_code, Data());
    result.m_shape = Shape::List;
    result.m_fields = std::make_shared<const std::vector<Field>>(std::move(fields));
    return result;
}

EventDescriptor EventDescriptor::record(std::vector<Field> fields, FourCharCode type)
{
    EventDescriptor result(type, Data());
    result.m_shape = Shape::Record;
    result.m_fields = std::make_shared<const std::vector<Field>>(std::move(fields));
    return result;
}

Data EventDescriptor::data() const { return m_shape == Shape::Scalar ? m_data : flattenDescriptor(*this); }

EventDescriptor EventDescriptor::fromTypeAndData(FourCharCode type, const Data& data)
{
    if (data.chars().starts_with("dle2")) {
        if (auto inner = unflattenDescriptor(data);
            inner && inner->m_shape != Shape::Scalar && inner->m_type == type)
            return *std::move(inner);
    }
    return { type, data };
}

const std::vector<EventDescriptor::Field>& EventDescriptor::fields() const
{
    static const std::vector<Field> none;
    return m_fields ? *m_fields : none;
}

EventDescriptor EventDescriptor::descriptorAtIndex(std::size_t position) const
{
    return position >= 1 && position <= fields().size() ? fields()[position - 1].value : EventDescriptor();
}

EventDescriptor EventDescriptor::descriptorForKeyword(FourCharCode keyword) const
{
    for (const Field& field : fields()) {
        if (field.keyword == keyword)
            return field.value;
    }
    return {};
}

std::optional<String> EventDescriptor::stringValue() const
{
    if (m_shape != Shape::Scalar)
        return std::nullopt;
    if (auto text = scalarText(m_type, m_data))
        return text;
    if (const auto number = scalarNumber(m_type, m_data))
        return textFromNumber(*number);
    if (const auto yes = booleanValue())
        return String(*yes ? u"true" : u"false");
    if (const auto code = codeValue())
        return stringFromMacRoman(codeCharacters(*code));
    return std::nullopt;
}

std::optional<double> EventDescriptor::doubleValue() const
{
    if (m_shape != Shape::Scalar)
        return std::nullopt;
    if (const auto number = scalarNumber(m_type, m_data))
        return number;
    if (const auto yes = booleanValue())
        return *yes ? 1 : 0;
    const auto text = scalarText(m_type, m_data);
    return text ? numberInText(*text) : std::nullopt;
}

std::optional<std::int32_t> EventDescriptor::int32Value() const
{
    const auto number = doubleValue();
    if (!number || !(std::abs(*number) < 2147483648.0))
        return std::nullopt;
    return static_cast<std::int32_t>(*number);
}

std::optional<bool> EventDescriptor::booleanValue() const
{
    if (m_type == "true"_code)
        return true;
    if (m_type == "fals"_code)
        return false;
    if (m_type == "bool"_code && m_data.size() == 1)
        return m_data.bytes()[0] != 0;
    return std::nullopt;
}

std::optional<FourCharCode> EventDescriptor::codeValue() const
{
    const bool isCode = m_type == "type"_code || m_type == "enum"_code || m_type == "prop"_code
        || m_type == "keyw"_code || m_type == "abso"_code;
    return isCode ? read<FourCharCode>(m_data) : std::nullopt;
}

std::optional<Date> EventDescriptor::dateValue() const
{
    const auto seconds = m_type == "ldt "_code ? read<std::int64_t>(m_data) : std::nullopt;
    return seconds ? dateFromLongDateTime(*seconds) : std::nullopt;
}

bool operator==(const EventDescriptor& left, const EventDescriptor& right)
{
    return left.m_type == right.m_type && left.m_shape == right.m_shape && left.m_data == right.m_data
        && left.fields() == right.fields();
}

} // namespace caddis
