#include "platform/script/MacRoman.h"
#include "platform/script/ScriptText.h"
#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/FileSuite.h"
#include "platform/script/applescript/OpenFile.h"
#include "platform/script/applescript/SourceText.h"

#include <algorithm>
#include <filesystem>
#include <unistd.h>

namespace caddis::applescript {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void failMissing(const String& path)
{
    fail(ScriptErrorNumber::FileNotFound, format(u"File %@ wasn’t found.", quotedText(path)));
}

std::shared_ptr<OpenFile> opened(const String& path, bool writable)
{
    const std::string bytes = path.utf8();
    std::FILE* file = std::fopen(bytes.c_str(), writable ? "r+b" : "rb");
    std::error_code ignored;
    if (!file && writable && !fs::exists(bytes, ignored))
        file = std::fopen(bytes.c_str(), "w+b");
    if (!file && !fs::exists(bytes, ignored))
        failMissing(path);
    if (!file || fs::is_directory(bytes, ignored))
        fail(ScriptErrorNumber::FilePermission, format(u"File %@ wasn’t opened.", quotedText(path)));
    auto made = std::make_shared<OpenFile>();
    made->file.reset(file);
    made->writable = writable;
    return made;
}

// The file by the number that `open for access` gave, by its path when it is open, else opened for this once.
std::shared_ptr<OpenFile> fileFor(CommandCall& call, const Datum& value, bool writable)
{
    auto& files = call.interpreter.openFiles;
    if (value.isNumber()) {
        const std::int64_t number = requireInteger(call.interpreter, value);
        for (const auto& [path, file] : files) {
            if (file->number == number)
                return file;
        }
        fail(ScriptErrorNumber::FileNotOpen, String(u"File wasn’t open."));
    }
    const String path = requirePath(call.interpreter, value);
    const auto known = files.find(path);
    if (known == files.end())
        return opened(path, writable);
    if (writable && !known->second->writable)
        fail(ScriptErrorNumber::FilePermission, String(u"File not open with write permission."));
    return known->second;
}

std::int64_t sizeOf(OpenFile& file)
{
    const long place = std::ftell(file.file.get());
    std::fseek(file.file.get(), 0, SEEK_END);
    const long size = std::ftell(file.file.get());
    std::fseek(file.file.get(), place, SEEK_SET);
    return size;
}

Datum openForAccess(CommandCall& call)
{
    constexpr std::size_t MostFiles = 64;
    auto& files = call.interpreter.openFiles;
    const String path = call.directPath();
    if (files.contains(path) || files.size() >= MostFiles)
        fail(ScriptErrorNumber::FileNotOpen, String(u"File is already open."));
    auto file = opened(path, call.flag("write permission", false));
    int number = 1;
    for (const auto& [name, other] : files)
        number = std::max(number, other->number + 1);
    file->number = number;
    files.emplace(path, std::move(file));
    return Datum::integer(number);
}

Datum closeAccess(CommandCall& call)
{
    auto& files = call.interpreter.openFiles;
    const auto file = fileFor(call, call.requireDirect(), false);
    std::erase_if(files, [&](const auto& entry) { return entry.second == file; });
    return {};
}

Datum getEof(CommandCall& call) { return Datum::number(sizeOf(*fileFor(call, call.requireDirect(), false))); }

Datum setEof(CommandCall& call)
{
    const Datum target = call.requireDirect();
    const std::int64_t size = requireInteger(call.interpreter, call.argument("to"));
    const auto file = fileFor(call, target, true);
    if (size < 0 || ftruncate(fileno(file->file.get()), size) != 0)
        fail(ScriptErrorNumber::FilePermission, String(u"The file’s size could not be set."));
    return {};
}

// Positions count from 1; negative ones from the end.
std::int64_t placeOf(CommandCall& call, const Datum& value, std::int64_t size)
{
    if (value.is(Kind::Constant) && value.asSymbol() == Symbol::Eof)
        return size;
    const std::int64_t position = requireInteger(call.interpreter, value);
    return position > 0 ? position - 1 : std::max<std::int64_t>(size + position, 0);
}

Datum decoded(CommandCall& call, std::string bytes)
{
    const Datum& type = call.argument("as");
    const Symbol wanted = type.is(Kind::Class) ? type.asSymbol() : Symbol::None;
    if (wanted == Symbol::Data)
        return make<DataObject>("rdat"_code, Data::adopt(std::move(bytes)));
    String text;
    if (wanted == Symbol::Utf8Text)
        text = String::fromUtf8(bytes);
    else if (wanted == Symbol::UnicodeText && !bytes.starts_with("\xFE\xFF")
        && !bytes.starts_with("\xFF\xFE"))
        text = decodeScript("\xFE\xFF" + bytes);
    else if (wanted == Symbol::String)
        text = stringFromMacRoman(bytes);
    else
        text = decodeScript(bytes);
    const Datum value = Datum::text(text);
    return wanted == Symbol::None ? value : coerce(call.interpreter, value, canonicalClass(wanted));
}

Datum splitByDelimiter(CommandCall& call, const String& text, const Datum& delimiter)
{
    const String mark = requireText(call.interpreter, delimiter);
    std::vector<Datum> items;
    std::u16string_view rest = text;
    while (!mark.isEmpty()) {
        const std::size_t end = rest.find(mark.view());
        if (end == std::u16string_view::npos)
            break;
        items.push_back(Datum::text(rest.substr(0, end)));
        rest.remove_prefix(end + mark.length());
    }
    if (!rest.empty())
        items.push_back(Datum::text(rest));
    return make<List>(std::move(items));
}

Datum readFile(CommandCall& call)
{
    const auto file = fileFor(call, call.requireDirect(), false);
    const std::int64_t size = sizeOf(*file);
    const Datum& from = call.argument("from");
    std::int64_t start = from.isSet() ? placeOf(call, from, size) : std::ftell(file->file.get());
    std::int64_t end = size;
    if (const Datum& to = call.argument("to"); to.isSet())
        end = std::min(size, placeOf(call, to, size) + 1);
    if (const Datum& count = call.argument("for"); count.isSet())
        end = std::min(size, start + requireInteger(call.interpreter, count));
    if (start >= size && size > 0)
        fail(ScriptErrorNumber::EndOfFile, String(u"End of file error."));
    call.interpreter.heap().require(static_cast<std::size_t>(std::max<std::int64_t>(end - start, 0)) * 3);
    std::string bytes(static_cast<std::size_t>(std::max<std::int64_t>(end - start, 0)), '\0');
    std::fseek(file->file.get(), static_cast<long>(start), SEEK_SET);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file->file.get()));
    if (const Datum& before = call.argument("before"); before.isSet())
        bytes.resize(std::min(bytes.find(requireText(call.interpreter, before).utf8()), bytes.size()));
    Datum value = decoded(call, std::move(bytes));
    const Datum& delimiter = call.argument("using delimiter");
    return delimiter.isSet() && value.is(Kind::Text)
        ? splitByDelimiter(call, value.as<Text>().value(), delimiter)
        : value;
}

std::string encoded(CommandCall& call, const Datum& value)
{
    if (const auto* data = value.get<DataObject>())
        return std::string(data->bytes.chars());
    const String text = requireText(call.interpreter, value);
    const Datum& type = call.argument("as");
    const Symbol wanted = type.is(Kind::Class) ? type.asSymbol() : Symbol::None;
    if (wanted != Symbol::UnicodeText)
        return text.utf8();
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit >> 8);
        bytes += static_cast<char>(unit & 0xFF);
    }
    return bytes;
}

Datum writeFile(CommandCall& call)
{
    const std::string bytes = encoded(call, call.requireDirect());
    const auto file = fileFor(call, call.interpreter.value(call.argument("to")), true);
    if (const Datum& start = call.argument("starting at"); start.isSet())
        std::fseek(file->file.get(), static_cast<long>(placeOf(call, start, sizeOf(*file))), SEEK_SET);
    else
        std::fseek(file->file.get(), 0, SEEK_CUR); // Between reading and writing the place must be set anew.
    if (std::fwrite(bytes.data(), 1, bytes.size(), file->file.get()) != bytes.size()
        || std::fflush(file->file.get()) != 0)
        fail(ScriptErrorNumber::FilePermission, String(u"The file could not be written."));
    return {};
}

Datum infoFor(CommandCall& call)
{
    const String path = call.directPath();
    std::error_code ignored;
    if (!fs::exists(path.utf8(), ignored))
        failMissing(path);
    const Datum item = make<FileObject>(Symbol::Alias, path);
    Datum made = make<Record>();
    const bool isFolder = fs::is_directory(path.utf8(), ignored);
    for (const Symbol name : { Symbol::Name, Symbol::CreationDate, Symbol::ModificationDate, Symbol::Size,
             Symbol::NameExtension, Symbol::Visible, Symbol::DisplayedName, Symbol::Kind, Symbol::FileType,
             Symbol::Locked, Symbol::PackageFolder })
        made.as<Record>().set(name, fileProperty(call.interpreter, item, name).value_or(Datum::missing()));
    made.as<Record>().set(Symbol::Folder, Datum::boolean(isFolder));
    made.as<Record>().set(Symbol::Alias, Datum::boolean(fs::is_symlink(path.utf8(), ignored)));
    return made;
}

Datum listFolder(CommandCall& call)
{
    const String path = call.directPath();
    const bool invisibles = call.flag("invisibles", true);
    std::error_code error;
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path.utf8(), error)) {
        call.interpreter.step();
        const std::string name = entry.path().filename().string();
        if (invisibles || !name.starts_with('.'))
            names.push_back(name);
    }
    if (error)
        failMissing(path);
    std::ranges::sort(names);
    std::vector<Datum> items;
    items.reserve(names.size());
    for (const std::string& name : names)
        items.push_back(Datum::text(String::fromUtf8(name)));
    return make<List>(std::move(items));
}

constexpr CommandParameter openParameters[] = { { "write permission", true } };
constexpr CommandParameter setEofParameters[] = { { "to" } };
constexpr CommandParameter readParameters[] = { { "from" }, { "for" }, { "to" }, { "before" }, { "until" },
    { "using delimiter" }, { "using delimiters" }, { "as" } };
constexpr CommandParameter writeParameters[] = { { "to" }, { "starting at" }, { "for" }, { "as" } };
constexpr CommandParameter infoParameters[] = { { "size", true } };
constexpr CommandParameter listParameters[] = { { "invisibles", true } };

constexpr CommandSpec commands[] = {
    { .name = "open for access", .perform = openForAccess, .parameters = openParameters },
    { .name = "close access", .perform = closeAccess, .parameters = {} },
    { .name = "get eof", .perform = getEof, .parameters = {}, .bindsTightly = true },
    { .name = "set eof", .perform = setEof, .parameters = setEofParameters },
    { .name = "read", .perform = readFile, .parameters = readParameters, .needsDirect = true },
    { .name = "write", .perform = writeFile, .parameters = writeParameters, .needsDirect = true },
    { .name = "info for", .perform = infoFor, .parameters = infoParameters, .bindsTightly = true },
    { .name = "list folder", .perform = listFolder, .parameters = listParameters, .bindsTightly = true },
};

} // namespace

std::span<const CommandSpec> fileCommands() { return commands; }

} // namespace caddis::applescript
