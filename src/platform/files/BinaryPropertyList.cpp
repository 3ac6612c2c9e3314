// The binary form, all numbers big-endian:
//
//     "bplist00" | objects | table of their offsets | trailer
//
//     trailer   the last 32 bytes: 6 unused, size of an offset (1), size of a reference (1),
//               number of objects (8), number of the top object (8), place of the table (8)
//     object    a byte, kind and count in four bits each, then its contents; count 15: an integer object
//               with the real count follows
//
// Objects may overlap and name one another in circles, so nothing is believed of the whole. Every object is
// decoded where it is used, and what it adds is taken from an allowance: a reference takes at least one byte
// of an honest file, and so does a character, so all of them together are never more than the file's bytes.

#include "platform/files/PropertyList.h"

#include <bit>
#include <cmath>

namespace caddis::PropertyList {

namespace {

constexpr std::size_t HeaderSize = 8;
constexpr std::size_t TrailerSize = 32;
constexpr unsigned CountFollows = 15;

std::uint64_t bigEndian(std::string_view bytes)
{
    std::uint64_t number = 0;
    for (const char byte : bytes)
        number = number << 8U | static_cast<std::uint8_t>(byte);
    return number;
}

// What is left of an object's bytes.
class Contents {
public:
    explicit Contents(std::string_view bytes)
        : m_rest(bytes)
    {
    }
    std::size_t size() const { return m_rest.size(); }
    std::optional<std::string_view> take(std::uint64_t count)
    {
        if (count > m_rest.size())
            return std::nullopt;
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(count);
        return taken;
    }
    // The whole number of `width` bytes each, when all of them are there.
    std::optional<std::string_view> take(std::uint64_t count, std::size_t width)
    {
        return count <= m_rest.size() / width ? take(count * width) : std::nullopt;
    }

private:
    std::string_view m_rest;
};

class BinaryReader {
public:
    explicit BinaryReader(const Data& data)
        : m_data(data)
        , m_allowance(data.size())
    {
    }

    std::optional<Value> read()
    {
        if (!readTrailer())
            return std::nullopt;
        m_strings.resize(m_count);
        return object(m_top, 0);
    }

private:
    bool readTrailer()
    {
        const std::string_view bytes = m_data.chars();
        if (bytes.size() < HeaderSize + TrailerSize || !bytes.starts_with("bplist0"))
            return false;
        const std::string_view trailer = bytes.substr(bytes.size() - TrailerSize);
        m_offsetSize = static_cast<std::uint8_t>(trailer[6]);
        m_referenceSize = static_cast<std::uint8_t>(trailer[7]);
        m_count = bigEndian(trailer.substr(8, 8));
        m_top = bigEndian(trailer.substr(16, 8));
        m_table = bigEndian(trailer.substr(24, 8));
        const std::size_t end = bytes.size() - TrailerSize;
        return m_offsetSize >= 1 && m_offsetSize <= 8 && m_referenceSize >= 1 && m_referenceSize <= 8
            && m_table >= HeaderSize && m_table <= end && m_count <= (end - m_table) / m_offsetSize;
    }

    bool spend(std::uint64_t amount)
    {
        if (amount > m_allowance)
            return false;
        m_allowance -= amount;
        return true;
    }

    std::optional<Contents> contentsOf(std::uint64_t reference) const
    {
        if (reference >= m_count)
            return std::nullopt;
        const std::string_view bytes = m_data.chars();
        const std::uint64_t offset
            = bigEndian(bytes.substr(m_table + reference * m_offsetSize, m_offsetSize));
        if (offset < HeaderSize || offset >= m_table)
            return std::nullopt;
        return Contents(bytes.substr(offset, m_table - offset));
    }

    std::optional<Value> object(std::uint64_t reference, int depth)
    {
        auto contents = contentsOf(reference);
        if (!contents)
            return std::nullopt;
        const auto mark = static_cast<std::uint8_t>(contents->take(1)->front());
        const unsigned low = mark & 15U;
        switch (mark >> 4U) {
        case 0x0:
            return simple(low);
        case 0x1:
            return integer(*contents, low);
        case 0x2:
            return real(*contents, low);
        case 0x3:
            return date(*contents);
        case 0x4:
            return dataOf(*contents, low);
        case 0x5:
        case 0x6:
            return string(reference);
        case 0x8:
            return depth < MostNested ? uid(*contents, low) : std::nullopt;
        case 0xA:
        case 0xC:
            return array(*contents, low, depth + 1);
        case 0xD:
            return dictionary(*contents, low, depth + 1);
        default:
            return std::nullopt;
        }
    }

    static std::optional<Value> simple(unsigned low)
    {
        if (low == 0)
            return Value();
        return low == 8 || low == 9 ? std::optional(Value(low == 9)) : std::nullopt;
    }

    // Up to four bytes are unsigned, eight are signed; sixteen carry what eight signed ones cannot.
    static std::optional<Value> integer(Contents& contents, unsigned low)
    {
        const auto bytes = low <= 4 ? contents.take(std::uint64_t(1) << low) : std::nullopt;
        if (!bytes)
            return std::nullopt;
        const std::uint64_t number = bigEndian(bytes->substr(bytes->size() > 8 ? 8 : 0));
        if (bytes->size() == 8 || (bytes->size() == 16 && bigEndian(bytes->substr(0, 8)) != 0))
            return Value(static_cast<std::int64_t>(number));
        return Value(number);
    }

    static std::optional<Value> real(Contents& contents, unsigned low)
    {
        const auto bytes = low == 2 || low == 3 ? contents.take(std::uint64_t(1) << low) : std::nullopt;
        if (!bytes)
            return std::nullopt;
        if (bytes->size() == 4)
            return Value(std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(*bytes))));
        return Value(std::bit_cast<double>(bigEndian(*bytes)));
    }

    static std::optional<Value> date(Contents& contents)
    {
        const auto bytes = contents.take(8);
        const double seconds = bytes ? std::bit_cast<double>(bigEndian(*bytes)) : NAN;
        return std::isfinite(seconds) ? std::optional(Value(Date { seconds })) : std::nullopt;
    }

    static std::optional<Value> uid(Contents& contents, unsigned low)
    {
        const auto bytes = low < 8 ? contents.take(low + 1) : std::nullopt;
        if (!bytes)
            return std::nullopt;
        return Value(Dictionary { { u"CF$UID"_s, Value(bigEndian(*bytes)) } });
    }

    std::optional<std::uint64_t> count(Contents& contents, unsigned low) const
    {
        if (low != CountFollows)
            return low;
        const auto mark = contents.take(1);
        if (!mark || (mark->front() & 0xFC) != 0x10)
            return std::nullopt;
        const auto bytes
            = contents.take(std::uint64_t(1) << (static_cast<unsigned char>(mark->front()) & 3U));
        return bytes ? std::optional(bigEndian(*bytes)) : std::nullopt;
    }

    std::optional<Value> dataOf(Contents& contents, unsigned low)
    {
        const auto size = count(contents, low);
        const auto bytes = size ? contents.take(*size) : std::nullopt;
        if (!bytes)
            return std::nullopt;
        const auto start = static_cast<std::size_t>(bytes->data() - m_data.chars().data());
        return Value(m_data.slice({ start, bytes->size() }));
    }

    // The string at a reference, decoded once; nil for another kind of object.
    std::optional<Value> string(std::uint64_t reference)
    {
        auto contents = contentsOf(reference);
        if (!contents)
            return std::nullopt;
        if (!m_strings[reference].isEmpty())
            return Value(m_strings[reference]);
        const auto mark = static_cast<std::uint8_t>(contents->take(1)->front());
        const bool isWide = mark >> 4U == 0x6;
        if (!isWide && mark >> 4U != 0x5)
            return std::nullopt;
        const auto length = count(*contents, mark & 15U);
        const auto bytes = length ? contents->take(*length, isWide ? 2 : 1) : std::nullopt;
        if (!bytes || !spend(*length))
            return std::nullopt;
        m_strings[reference] = isWide ? wideString(*bytes) : String::fromLatin1(*bytes);
        return Value(m_strings[reference]);
    }

    static String wideString(std::string_view bytes)
    {
        std::u16string units(bytes.size() / 2, u'\0');
        for (std::size_t index = 0; index < units.size(); ++index)
            units[index] = static_cast<char16_t>(bigEndian(bytes.substr(2 * index, 2)));
        return String(units);
    }

    std::optional<std::string_view> references(Contents& contents, std::uint64_t number, std::size_t each)
    {
        const auto bytes = contents.take(number, each * m_referenceSize);
        return bytes && spend(number) ? bytes : std::nullopt;
    }

    std::uint64_t referenceAt(std::string_view references, std::uint64_t index) const
    {
        return bigEndian(references.substr(index * m_referenceSize, m_referenceSize));
    }

    std::optional<Value> array(Contents& contents, unsigned low, int depth)
    {
        const auto number = count(contents, low);
        const auto items = number ? references(contents, *number, 1) : std::nullopt;
        if (!items || depth > MostNested)
            return std::nullopt;
        Array result;
        result.reserve(*number);
        for (std::uint64_t index = 0; index < *number; ++index) {
            auto item = object(referenceAt(*items, index), depth);
            if (!item)
                return std::nullopt;
            result.push_back(std::move(*item));
        }
        return Value(std::move(result));
    }

    std::optional<Value> dictionary(Contents& contents, unsigned low, int depth)
    {
        const auto number = count(contents, low);
        const auto pairs = number ? references(contents, *number, 2) : std::nullopt;
        if (!pairs || depth > MostNested)
            return std::nullopt;
        std::vector<Dictionary::Entry> entries;
        entries.reserve(*number);
        for (std::uint64_t index = 0; index < *number; ++index) {
            const auto key = string(referenceAt(*pairs, index));
            auto value = key ? object(referenceAt(*pairs, *number + index), depth) : std::nullopt;
            if (!value)
                return std::nullopt;
            entries.push_back({ *key->as<String>(), std::move(*value) });
        }
        return Value(Dictionary::adopt(std::move(entries)));
    }

    const Data& m_data;
    std::uint64_t m_allowance;
    std::size_t m_offsetSize = 0;
    std::size_t m_referenceSize = 0;
    std::uint64_t m_count = 0;
    std::uint64_t m_top = 0;
    std::uint64_t m_table = 0;
    std::vector<String> m_strings; // By number; empty when not decoded yet.
};

} // namespace

std::optional<Value> readBinary(const Data& data) { return BinaryReader(data).read(); }

} // namespace caddis::PropertyList
