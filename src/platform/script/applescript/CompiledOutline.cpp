#include "platform/script/applescript/CompiledOutline.h"

#include "platform/base/MutableString.h"
#include "platform/script/MacRoman.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace caddis {

namespace {

enum Kind : std::uint8_t {
    Symbol = 1,
    Pair = 2,
    SmallInteger = 3, // The size is the value.
    ValueBlock = 4,
    Binding = 6,
    LongInteger = 7,
    Float = 8,
    Boolean = 9,
    CodeName = 10,
    UserName = 11,
    StyledText = 12,
    StatementBlock = 13,
    ValueBlock2 = 14,
    TypedData = 15,
    PointerBlock = 16,
    PlainData = 17,
    LongTypedData = 18,
    LongPlainData = 19,
};

constexpr std::uint8_t ScriptTag = 15; // Of a value block: a script inside the script.
constexpr std::size_t DeepestObject = 1'000;
constexpr std::size_t LongestName = 255; // In bytes.
constexpr std::size_t MostNames = 65'535;

struct Object {
    std::uint8_t kind = Symbol;
    std::uint8_t tag = 0;
    std::vector<std::size_t> children; // Places among all objects.
    std::span<const std::uint8_t> data;
};

struct Header {
    std::uint8_t kind = 0;
    std::int16_t reference = 0;
    std::uint16_t size = 0;
};

struct Malformed { };

// Every object has a header of five bytes, so that there are no more objects than a fifth of the bytes.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes)
        : m_rest(bytes)
    {
    }

    std::vector<Object> run()
    {
        object(header(), 0);
        return std::move(m_objects);
    }

private:
    std::span<const std::uint8_t> take(std::size_t count)
    {
        if (count > m_rest.size())
            throw Malformed();
        const auto part = m_rest.first(count);
        m_rest = m_rest.subspan(count);
        return part;
    }
    std::uint8_t byte() { return take(1)[0]; }
    std::uint16_t word()
    {
        const auto part = take(2);
        return static_cast<std::uint16_t>(part[0] << 8 | part[1]);
    }
    std::size_t longWord()
    {
        const std::size_t high = word();
        return high << 16 | word();
    }
    Header header()
    {
        Header result;
        result.kind = byte();
        result.reference = static_cast<std::int16_t>(word());
        result.size = word();
        return result;
    }

    // The object's place. Objects stand behind the objects inside them; the outermost is the last.
    std::size_t object(const Header& header, std::size_t depth)
    {
        if (depth > DeepestObject)
            throw Malformed();
        Object made;
        made.kind = header.kind;
        body(made, header.size, depth);
        m_objects.push_back(std::move(made));
        if (header.reference >= 0)
            m_known.insert_or_assign(header.reference, m_objects.size() - 1);
        return m_objects.size() - 1;
    }

    void body(Object& made, std::size_t size, std::size_t depth)
    {
        switch (made.kind) {
        case Symbol:
        case LongInteger:
        case Float:
        case PlainData:
            made.data = take(size);
            break;
        case SmallInteger:
        case Boolean:
            break;
        case Pair:
            if (size)
                chain(made, 2, depth);
            break;
        case Binding:
            if (size == 3)
                chain(made, 3, depth);
            break;
        case CodeName:
            made.tag = byte();
            made.data = take(made.tag == 46 ? 24 : made.tag == 11 ? 8 : 4);
            break;
        case UserName:
            userName(made);
            break;
        case StyledText:
            made.data = take(word());
            take(word());
            break;
        case StatementBlock:
            made.tag = byte();
            take(6); // What it is, and its part of the byte code.
            references(made, size, depth);
            break;
        case ValueBlock:
        case ValueBlock2:
            made.tag = byte();
            [[fallthrough]];
        case PointerBlock:
            references(made, size, depth);
            break;
        case TypedData:
            made.tag = byte();
            made.data = take(size);
            break;
        case LongTypedData:
            made.tag = byte();
            [[fallthrough]];
        case LongPlainData:
            made.data = take(longWord());
            break;
        default:
            throw Malformed();
        }
    }

    // The name as it is shown, else the name that is compared.
    void userName(Object& made)
    {
        constexpr std::uint8_t Mark = 48;
        if (byte() != Mark)
            throw Malformed();
        made.data = take(word());
        if (const auto shown = take(word()); !shown.empty())
            made.data = shown;
    }

    void references(Object& made, std::size_t count, std::size_t depth)
    {
        const auto numbers = take(count * 2);
        for (std::size_t index = 0; index < count; ++index)
            made.children.push_back(referenced(
                static_cast<std::int16_t>(numbers[2 * index] << 8 | numbers[2 * index + 1]), depth));
    }

    std::size_t referenced(std::int16_t reference, std::size_t depth)
    {
        if (const auto known = m_known.find(reference); reference >= 0 && known != m_known.end())
            return known->second;
        return object(header(), depth + 1);
    }

    // A list: heads (or keys and values) one after the other, each with a reference to the next link, which
    // follows without nesting.
    void chain(Object& made, std::size_t width, std::size_t depth)
    {
        while (true) {
            const auto numbers = take(width * 2);
            const auto number = [&](std::size_t index) {
                return static_cast<std::int16_t>(numbers[2 * index] << 8 | numbers[2 * index + 1]);
            };
            for (std::size_t index = 0; index + 1 < width; ++index)
                made.children.push_back(referenced(number(index), depth));
            const std::int16_t rest = number(width - 1);
            if (rest >= 0 && m_known.contains(rest))
                return;
            const Header link = header();
            if (link.kind != made.kind) {
                object(link, depth + 1);
                return;
            }
            if (link.size != width)
                return;
        }
    }

    std::span<const std::uint8_t> m_rest;
    std::vector<Object> m_objects;
    std::unordered_map<std::int16_t, std::size_t> m_known;
};

class Outliner {
public:
    explicit Outliner(const std::vector<Object>& objects)
        : m_objects(objects)
    {
    }

    CompiledOutline run()
    {
        const Object& script = m_objects.back();
        if (script.children.empty())
            return {};
        std::vector<bool> isDone(m_objects.size());
        for (const std::size_t member : m_objects[script.children.back()].children) {
            if (!isDone[member])
                add(m_objects[member]);
            isDone[member] = true;
        }
        return std::move(m_outline);
    }

private:
    // A handler has its name first and its byte code seventh; what has a name and less is a property.
    void add(const Object& member)
    {
        constexpr std::size_t Code = 6;
        const bool isBlock
            = member.kind == ValueBlock || member.kind == ValueBlock2 || member.kind == PointerBlock;
        if (member.kind == Binding) {
            for (std::size_t index = 0; index + 1 < member.children.size(); index += 2)
                addName(m_outline.properties, member.children[index]);
        } else if (isBlock && !member.children.empty() && member.tag != ScriptTag) {
            const bool isHandler = member.children.size() > Code;
            addName(isHandler ? m_outline.handlers : m_outline.properties, member.children.front());
        }
    }

    void addName(std::vector<String>& names, std::size_t place) const
    {
        const Object& name = m_objects[place];
        const std::string_view bytes(reinterpret_cast<const char*>(name.data.data()), name.data.size());
        if (bytes.size() > LongestName || names.size() >= MostNames)
            return;
        if (name.kind == UserName)
            names.push_back(String::fromStrictUtf8(bytes).value_or(stringFromMacRoman(bytes)));
        else if (name.kind == CodeName && bytes.size() >= 8)
            names.push_back(eventName(bytes.substr(0, 8)));
    }

    static String eventName(std::string_view code)
    {
        static constexpr std::pair<std::string_view, std::u16string_view> events[]
            = { { "aevtoapp", u"run" }, { "aevtodoc", u"open" }, { "aevtquit", u"quit" },
                  { "aevtrapp", u"reopen" }, { "aevtpdoc", u"print" }, { "miscidle", u"idle" } };
        const auto* const known
            = std::ranges::find(events, code, &std::pair<std::string_view, std::u16string_view>::first);
        if (known != std::end(events))
            return String(known->second);
        MutableString name(16);
        name.append(u"«event ").append(stringFromMacRoman(code)).append(u'»');
        return std::move(name).take();
    }

    const std::vector<Object>& m_objects;
    CompiledOutline m_outline;
};

} // namespace

std::optional<CompiledOutline> compiledOutline(std::span<const std::uint8_t> bytes)
{
    constexpr std::string_view Mark = "FasdUAS ";
    constexpr std::size_t Versions = 8;
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.starts_with("#!"))
        text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
    if (!text.starts_with(Mark) || text.size() < Mark.size() + Versions)
        return std::nullopt;
    try {
        const auto objects = Reader(bytes.subspan(bytes.size() - text.size() + Mark.size() + Versions)).run();
        return Outliner(objects).run();
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

} // namespace caddis
