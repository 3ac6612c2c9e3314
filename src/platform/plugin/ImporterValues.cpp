#include "platform/plugin/ImporterValues.h"

#include "platform/base/LeftOut.h"
#include "platform/base/Log.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unistd.h>
#include <unordered_map>

// A dictionary keeps its entries in order and finds them by name; keys stay in the plug-in's UTF-8. A value
// is a C object with a count because C code owns references to it.
struct CaddisValue {
    explicit CaddisValue(CaddisKind of)
        : kind(of)
    {
    }

    CaddisKind kind;
    std::uint32_t references = 1;
    caddis::Value scalar {};
    std::string text {}; // What append_text has collected; only in a dictionary.
    std::vector<CaddisValue*> items {}; // Of an array, and of a dictionary in the order of `keys`.
    std::vector<std::string> keys {};
    std::unordered_map<std::string, std::size_t> places {};
    CaddisValue* parent = nullptr; // What it is an item of. One place each, so that all values form trees.
    int height = 0; // Containers inside each other below this one, at most MostNested.
};

namespace caddis {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int MostNested = 64;
constexpr std::string_view TextKey = "kMDItemTextContent";

// One import at a time, on the thread that runs it.
struct Import {
    std::size_t text = 0;
    std::size_t attributes = 0;
    Clock::time_point deadline;
    bool isTextFull = false;
};
thread_local Import* current = nullptr;

bool spend(std::size_t bytes)
{
    bytes += sizeof(CaddisValue);
    if (!current)
        return false;
    if (bytes < sizeof(CaddisValue) || bytes > current->attributes) {
        noteLeftOut(u"attributes beyond 64 MiB");
        return false;
    }
    current->attributes -= bytes;
    return true;
}

// The plug-in may hold the item longer than its container lives.
CaddisValue* detached(CaddisValue* item)
{
    item->parent = nullptr;
    return item;
}

void release(CaddisValue* value)
{
    if (!value || --value->references > 0)
        return;
    for (CaddisValue* item : value->items)
        release(detached(item));
    delete value;
}

CaddisValue* scalar(CaddisKind kind, Value content, std::size_t bytes)
{
    if (!spend(bytes))
        return nullptr;
    auto value = std::make_unique<CaddisValue>(kind);
    value->scalar = std::move(content);
    return value.release();
}

bool isKind(const CaddisValue* value, CaddisKind kind) { return value && value->kind == kind; }

// Makes the item one of the container's unless it is somewhere already, would come to contain itself, or the
// whole would nest too deep.
bool attach(CaddisValue* item, CaddisValue* container)
{
    int height = item->height;
    if (item->parent)
        return false;
    for (const CaddisValue* above = container; above; above = above->parent) {
        if (above == item || ++height > MostNested)
            return false;
    }
    item->parent = container;
    height = item->height;
    for (CaddisValue* above = container; above; above = above->parent)
        above->height = std::max(above->height, ++height);
    return true;
}

int set(CaddisValue* dictionary, const char* key, CaddisValue* item)
{
    if (!isKind(dictionary, CADDIS_DICTIONARY) || !key || !item || !attach(item, dictionary)) {
        release(item);
        return 0;
    }
    const auto [place, isNew] = dictionary->places.try_emplace(key, dictionary->items.size());
    if (isNew) {
        dictionary->keys.emplace_back(key);
        dictionary->items.push_back(item);
    } else {
        release(detached(std::exchange(dictionary->items[place->second], item)));
    }
    return 1;
}

int setScalar(CaddisValue* dictionary, const char* key, CaddisKind kind, Value content, std::size_t bytes = 0)
{
    if (!key)
        return 0;
    return set(dictionary, key, scalar(kind, std::move(content), bytes + std::strlen(key)));
}

int setString(CaddisValue* dictionary, const char* key, const char* utf8, std::size_t length)
{
    if (!utf8)
        return 0;
    if (length > AttributeBudget)
        return 0;
    return setScalar(dictionary, key, CADDIS_STRING, String::fromUtf8({ utf8, length }), length);
}

int setString16(CaddisValue* dictionary, const char* key, const std::uint16_t* units, std::size_t count)
{
    if (!units || count > AttributeBudget / 2)
        return 0;
    std::u16string text(count, u'\0');
    std::memcpy(text.data(), units, 2 * count);
    return setScalar(dictionary, key, CADDIS_STRING, String(text), 2 * count);
}

int setInteger(CaddisValue* dictionary, const char* key, std::int64_t value)
{
    return setScalar(dictionary, key, CADDIS_INTEGER, Value(value));
}

int setReal(CaddisValue* dictionary, const char* key, double value)
{
    return setScalar(dictionary, key, CADDIS_REAL, Value(value));
}

int setBoolean(CaddisValue* dictionary, const char* key, int value)
{
    return setScalar(dictionary, key, CADDIS_BOOLEAN, Value(value != 0));
}

int setDate(CaddisValue* dictionary, const char* key, double seconds)
{
    if (!std::isfinite(seconds))
        return 0;
    return setScalar(dictionary, key, CADDIS_DATE, Value(Date::fromUnixSeconds(seconds)));
}

int setData(CaddisValue* dictionary, const char* key, const void* bytes, std::size_t length)
{
    if (!bytes || length > AttributeBudget)
        return 0;
    const Data data = Data::copyOf({ static_cast<const char*>(bytes), length });
    return setScalar(dictionary, key, CADDIS_DATA, Value(data), length);
}

CaddisValue* make(CaddisKind kind, const void* bytes, std::size_t length);

int append(CaddisValue* array, CaddisValue* item)
{
    if (!isKind(array, CADDIS_ARRAY) || !item || !attach(item, array)) {
        release(item);
        return 0;
    }
    array->items.push_back(item);
    return 1;
}

CaddisValue* find(const CaddisValue* dictionary, const char* key)
{
    if (!isKind(dictionary, CADDIS_DICTIONARY) || !key)
        return nullptr;
    const auto place = dictionary->places.find(key);
    return place == dictionary->places.end() ? nullptr : dictionary->items[place->second];
}

int addString(CaddisValue* dictionary, const char* key, const char* utf8, std::size_t length)
{
    if (!find(dictionary, key) && !set(dictionary, key, make(CADDIS_ARRAY, nullptr, 0)))
        return 0;
    return append(find(dictionary, key), make(CADDIS_STRING, utf8, length));
}

int appendText(CaddisValue* dictionary, const char* utf8, std::size_t length)
{
    if (!isKind(dictionary, CADDIS_DICTIONARY) || !utf8 || !current)
        return 0;
    const std::size_t taken = std::min(length, current->text);
    dictionary->text.append(utf8, taken);
    current->text -= taken;
    current->isTextFull = current->isTextFull || taken < length;
    return taken == length ? 1 : 0;
}

template <typename T> std::optional<T> scalarIn(const void* bytes, std::size_t length)
{
    if (!bytes || length < sizeof(T))
        return std::nullopt;
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

CaddisValue* make(CaddisKind kind, const void* bytes, std::size_t length)
{
    const bool hasBytes = bytes && length <= AttributeBudget;
    const std::string_view chars(static_cast<const char*>(bytes), hasBytes ? length : 0);
    const auto real = scalarIn<double>(bytes, length);
    switch (kind) {
    case CADDIS_NULL:
    case CADDIS_ARRAY:
    case CADDIS_DICTIONARY:
        return scalar(kind, Value(), 0);
    case CADDIS_STRING:
        return hasBytes ? scalar(kind, String::fromUtf8(chars), length) : nullptr;
    case CADDIS_DATA:
        return hasBytes ? scalar(kind, Data::copyOf(chars), length) : nullptr;
    case CADDIS_BOOLEAN:
        return chars.empty() ? nullptr : scalar(kind, Value(chars.front() != 0), 0);
    case CADDIS_INTEGER:
        if (const auto number = scalarIn<std::int64_t>(bytes, length))
            return scalar(kind, Value(*number), 0);
        return nullptr;
    case CADDIS_REAL:
        return real ? scalar(kind, Value(*real), 0) : nullptr;
    case CADDIS_DATE:
        return real && std::isfinite(*real) ? scalar(kind, Date::fromUnixSeconds(*real), 0) : nullptr;
    }
    return nullptr;
}

const CaddisValue* get(const CaddisValue* dictionary, const char* key) { return find(dictionary, key); }

CaddisKind kindOf(const CaddisValue* value) { return value ? value->kind : CADDIS_NULL; }

void retain(CaddisValue* value)
{
    if (value)
        ++value->references;
}

int shouldStop()
{
    const bool isLate = current && Clock::now() > current->deadline;
    if (isLate)
        noteLeftOut(u"what was not read in time");
    return !current || isLate || current->isTextFull ? 1 : 0;
}

void noteLeftOutOfImport(const char* utf8)
{
    constexpr std::size_t LongestNote = 200;
    if (current && utf8)
        noteLeftOut(String::fromUtf8({ utf8, strnlen(utf8, LongestNote) }));
}

void logLine(const char* utf8)
{
    if (utf8)
        log(u"%s", utf8);
}

Value valueOf(const CaddisValue& value);

Dictionary dictionaryOf(const CaddisValue& value)
{
    std::vector<Dictionary::Entry> entries;
    for (std::size_t index = 0; index < value.items.size(); ++index)
        entries.push_back({ String::fromUtf8(value.keys[index]), valueOf(*value.items[index]) });
    if (!value.text.empty())
        entries.push_back({ String::fromUtf8(TextKey), String::fromUtf8(value.text) });
    return Dictionary::adopt(std::move(entries));
}

Value valueOf(const CaddisValue& value)
{
    if (value.kind == CADDIS_DICTIONARY)
        return dictionaryOf(value);
    if (value.kind != CADDIS_ARRAY)
        return value.scalar;
    Array items;
    for (const CaddisValue* item : value.items)
        items.push_back(valueOf(*item));
    return Value(std::move(items));
}

bool endsWithoutException(const String& path, FunctionRef<void()> call)
{
    try {
        call();
        return true;
    } catch (const std::exception& exception) {
        log(u"%@: exception %s", path, exception.what());
    } catch (...) {
        log(u"%@: exception", path);
    }
    return false;
}

} // namespace

const CaddisHost& importerHost()
{
    static const CaddisHost host { sizeof(CaddisHost), CADDIS_IMPORTER_ABI, setString, setString16,
        setInteger, setReal, setBoolean, setDate, setData, addString, appendText, make, append, set, get,
        kindOf, retain, release, shouldStop, logLine, noteLeftOutOfImport };
    return host;
}

Dictionary attributesOfImport(FunctionRef<void(CaddisValue* attributes)> import)
{
    const auto seconds = std::chrono::duration<double>(ImportSeconds);
    Import running { TextBudget, AttributeBudget,
        Clock::now() + std::chrono::duration_cast<Clock::duration>(seconds) };
    current = &running;
    // A plug-in that gives up references that are not its own can't free the dictionary under us.
    constexpr std::uint32_t HostReferences = 1 << 20;
    auto* const attributes = new CaddisValue(CADDIS_DICTIONARY);
    attributes->references = HostReferences;
    import(attributes);
    current = nullptr;
    Dictionary result = dictionaryOf(*attributes);
    attributes->references = std::max(attributes->references, HostReferences) - HostReferences + 1;
    release(attributes);
    if (running.isTextFull) {
        log(u"An importer gave more than %d bytes of text", TextBudget);
        noteLeftOut(u"text beyond 16 MiB");
    }
    return result;
}

bool withoutExceptions(const String& path, FunctionRef<void()> call)
{
    const pid_t process = getpid();
    const bool ended = endsWithoutException(path, call);
    // A copy of the process must not go on and answer requests beside it.
    if (getpid() != process)
        _exit(EXIT_FAILURE);
    return ended;
}

} // namespace caddis
