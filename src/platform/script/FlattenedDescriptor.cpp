#include "platform/script/FlattenedDescriptor.h"

#include <algorithm>
#include <cstring>

namespace caddis {

namespace {

constexpr FourCharCode Mark = "dle2"_code;
constexpr std::uint32_t MiddleBlock = 24; // From byte 16 of a plain list or record to its items.

// The width of the numbers in a scalar's data; 1 when the bytes have no order.
std::size_t unitWidth(FourCharCode type, std::size_t size)
{
    switch (type) {
    case "shor"_code:
    case "ushr"_code:
    case "utxt"_code:
        return 2;
    case "long"_code:
    case "magn"_code:
    case "sing"_code:
    case "type"_code:
    case "enum"_code:
    case "prop"_code:
    case "keyw"_code:
    case "abso"_code:
    case "kpid"_code:
    case "psn "_code:
        return 4;
    case "comp"_code:
    case "ucom"_code:
    case "doub"_code:
    case "ldt "_code:
        return 8;
    case "ldbl"_code:
        return size;
    default:
        return 1;
    }
}

// Turns every number in the data around; what does not fill a whole number stays.
void swapUnits(FourCharCode type, std::uint8_t* bytes, std::size_t size)
{
    const std::size_t width = unitWidth(type, size);
    if (width < 2)
        return;
    for (std::size_t at = 0; at + width <= size; at += width)
        std::reverse(bytes + at, bytes + at + width);
}

class Writer {
public:
    void number(std::uint32_t value)
    {
        for (int shift = 24; shift >= 0; shift -= 8)
            m_bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    void numberAt(std::size_t place, std::size_t value)
    {
        for (std::size_t index = 0; index < 4; ++index)
            m_bytes[place + index] = static_cast<std::uint8_t>(value >> (24 - 8 * index));
    }
    void scalarData(const EventDescriptor& value)
    {
        const Data data = value.data();
        const std::size_t start = m_bytes.size();
        number(static_cast<std::uint32_t>(data.size()));
        m_bytes.insert(m_bytes.end(), data.span().begin(), data.span().end());
        swapUnits(value.descriptorType(), m_bytes.data() + start + 4, data.size());
        if (data.size() % 2)
            m_bytes.push_back(0);
    }
    void items(const EventDescriptor& container)
    {
        number(static_cast<std::uint32_t>(container.numberOfItems()));
        number(0);
        for (const auto& [keyword, value] : container.fields()) {
            if (container.isRecord())
                number(keyword);
            item(value);
        }
    }
    std::size_t size() const { return m_bytes.size(); }
    Data take() { return Data::adopt(std::move(m_bytes)); }

private:
    void item(const EventDescriptor& value)
    {
        number(value.descriptorType());
        if (!value.isList() && !value.isRecord()) {
            scalarData(value);
            return;
        }
        const std::size_t length = m_bytes.size();
        number(0);
        items(value);
        numberAt(length, m_bytes.size() - length - 4);
    }

    std::vector<std::uint8_t> m_bytes;
};

// Records with a type of their own that is known to be one inside another container: object specifiers and
// their parts. Of other types only the bytes can be told.
bool isSpecifierType(FourCharCode type)
{
    return type == "obj "_code || type == "rang"_code || type == "insl"_code;
}

// Reads items from a part of the data; every length is checked against what is left of that part.
class Reader {
public:
    Reader(const std::uint8_t* bytes, std::size_t size)
        : m_at(bytes)
        , m_end(bytes + size)
    {
    }

    std::size_t rest() const { return static_cast<std::size_t>(m_end - m_at); }
    bool number(std::uint32_t& value)
    {
        if (rest() < 4)
            return false;
        value = static_cast<std::uint32_t>(m_at[0]) << 24 | static_cast<std::uint32_t>(m_at[1]) << 16
            | static_cast<std::uint32_t>(m_at[2]) << 8 | m_at[3];
        m_at += 4;
        return true;
    }
    bool expect(std::uint32_t wanted)
    {
        std::uint32_t value = 0;
        return number(value) && value == wanted;
    }
    bool part(std::size_t length, Reader& inner)
    {
        if (rest() < length)
            return false;
        inner = Reader(m_at, length);
        m_at += length;
        return true;
    }
    // The pad byte behind data of odd length; its absence at the very end is forgiven.
    void skipPad(std::size_t length)
    {
        if (length % 2 && m_at != m_end)
            ++m_at;
    }
    EventDescriptor scalar(FourCharCode type) const
    {
        std::vector<std::uint8_t> bytes(m_at, m_end);
        swapUnits(type, bytes.data(), bytes.size());
        return { type, Data::adopt(std::move(bytes)) };
    }

private:
    const std::uint8_t* m_at;
    const std::uint8_t* m_end;
};

class Unflattener {
public:
    std::optional<EventDescriptor> topLevel(Reader& reader)
    {
        std::uint32_t type = 0;
        std::uint32_t length = 0;
        Reader body(nullptr, 0);
        if (!reader.expect(Mark) || !reader.expect(0) || !reader.number(type) || !reader.number(length)
            || !reader.part(length, body))
            return std::nullopt;
        reader.skipPad(length);
        if (reader.rest())
            return std::nullopt;
        if (isSpecifierType(type))
            return container(type, body, 1);
        if (type != "list"_code && type != "reco"_code)
            return body.scalar(type);
        if (!body.expect(0) || !body.expect(0) || !body.expect(MiddleBlock) || !body.expect(type))
            return std::nullopt;
        return container(type, body, 1);
    }

private:
    std::optional<EventDescriptor> container(FourCharCode type, Reader& reader, std::size_t depth)
    {
        const bool isRecord = type != "list"_code;
        const std::size_t smallestItem = isRecord ? 12 : 8;
        std::uint32_t count = 0;
        if (depth > MaximumDescriptorDepth || !reader.number(count) || !reader.expect(0)
            || count > reader.rest() / smallestItem || (m_items += count) > MaximumDescriptorItems)
            return std::nullopt;
        std::vector<EventDescriptor::Field> fields;
        for (std::uint32_t index = 0; index < count; ++index) {
            std::uint32_t keyword = 0;
            if (isRecord && !reader.number(keyword))
                return std::nullopt;
            auto value = item(reader, depth);
            if (!value)
                return std::nullopt;
            fields.push_back({ keyword, *std::move(value) });
        }
        if (reader.rest())
            return std::nullopt;
        return isRecord ? EventDescriptor::record(std::move(fields), type) : listOf(std::move(fields));
    }

    static EventDescriptor listOf(std::vector<EventDescriptor::Field> fields)
    {
        std::vector<EventDescriptor> items;
        items.reserve(fields.size());
        for (auto& field : fields)
            items.push_back(std::move(field.value));
        return EventDescriptor::list(std::move(items));
    }

    std::optional<EventDescriptor> item(Reader& reader, std::size_t depth)
    {
        std::uint32_t type = 0;
        std::uint32_t length = 0;
        Reader body(nullptr, 0);
        if (!reader.number(type) || !reader.number(length) || !reader.part(length, body))
            return std::nullopt;
        reader.skipPad(length);
        if (type == "list"_code || type == "reco"_code || isSpecifierType(type))
            return container(type, body, depth + 1);
        return body.scalar(type);
    }

    std::size_t m_items = 0;
};

} // namespace

Data flattenDescriptor(const EventDescriptor& descriptor)
{
    Writer writer;
    const FourCharCode type = descriptor.descriptorType();
    writer.number(Mark);
    writer.number(0);
    writer.number(type);
    if (!descriptor.isList() && !descriptor.isRecord()) {
        writer.scalarData(descriptor);
        return writer.take();
    }
    const std::size_t rest = writer.size();
    writer.number(0);
    if (type == "list"_code || type == "reco"_code) {
        writer.number(0);
        writer.number(0);
        writer.number(MiddleBlock);
        writer.number(type);
    }
    writer.items(descriptor);
    writer.numberAt(rest, writer.size() - rest - 4);
    return writer.take();
}

std::optional<EventDescriptor> unflattenDescriptor(const Data& data)
{
    Reader reader(data.bytes(), data.size());
    return Unflattener().topLevel(reader);
}

} // namespace caddis
