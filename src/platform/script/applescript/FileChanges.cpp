#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/FileSuite.h"
#include "platform/script/applescript/FolderPaths.h"
#include "platform/script/applescript/SourceText.h"

#include <filesystem>
#include <fstream>

namespace caddis::applescript {

namespace {

namespace fs = std::filesystem;

fs::path pathOf(Interpreter& interpreter, const Datum& value)
{
    std::string path = requirePath(interpreter, value).utf8();
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

[[noreturn]] void failChange(const fs::path& path, const std::error_code& error)
{
    const auto number = error == std::errc::file_exists ? ScriptErrorNumber::DuplicateFile
        : error == std::errc::no_such_file_or_directory ? ScriptErrorNumber::FileNotFound
                                                        : ScriptErrorNumber::FilePermission;
    fail(number, format(u"%s: %s", path.string(), error.message()));
}

void check(const fs::path& path, const std::error_code& error)
{
    if (error)
        failChange(path, error);
}

Datum fileObject(const fs::path& path)
{
    std::error_code ignored;
    bool folder = fs::is_directory(path, ignored);
    return make<FileObject>(folder ? Symbol::Folder : Symbol::File,
        String::fromUtf8(folder ? path.string() + '/' : path.string()));
}

// "name", "name 2", "name 3": the first that is free.
fs::path freePlace(const fs::path& wanted)
{
    std::error_code ignored;
    fs::path place = wanted;
    for (int number = 2; fs::exists(fs::symlink_status(place, ignored)); ++number)
        place = wanted.parent_path()
            / (wanted.stem().string() + ' ' + std::to_string(number) + wanted.extension().string());
    return place;
}

// One item, or each of several.
template <typename Change> Datum changeEach(CommandCall& call, Change change)
{
    const Datum items = call.requireDirect();
    if (!items.is(Kind::List))
        return fileObject(change(pathOf(call.interpreter, items)));
    Datum changed = make<List>();
    changed.as<List>().areElements = true;
    for (const Datum& item : items.as<List>().items()) {
        call.interpreter.step();
        changed.as<List>().append(fileObject(change(pathOf(call.interpreter, item))));
    }
    return changed;
}

fs::path destination(CommandCall& call, const char* label, const fs::path& item)
{
    const Datum& to = call.argument(label);
    if (!to.isSet())
        return item.parent_path();
    fs::path folder = pathOf(call.interpreter, call.interpreter.value(to));
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored))
        failChange(folder, std::make_error_code(std::errc::no_such_file_or_directory));
    return folder;
}

// The place in a folder, emptied when the script says so.
fs::path placeIn(CommandCall& call, const fs::path& folder, const fs::path& name)
{
    fs::path place = folder / name;
    std::error_code error;
    if (!fs::exists(fs::symlink_status(place, error)))
        return place;
    if (!call.flag("replacing", false))
        failChange(place, std::make_error_code(std::errc::file_exists));
    fs::remove_all(place, error);
    check(place, error);
    return place;
}

void moveTo(const fs::path& from, const fs::path& to)
{
    std::error_code error;
    fs::rename(from, to, error);
    if (error == std::errc::cross_device_link) {
        fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
        check(from, error);
        fs::remove_all(from, error);
    }
    check(from, error);
}

Datum moveItem(CommandCall& call)
{
    return changeEach(call, [&](const fs::path& item) {
        fs::path place = placeIn(call, destination(call, "to", item), item.filename());
        moveTo(item, place);
        return place;
    });
}

Datum duplicateItem(CommandCall& call)
{
    return changeEach(call, [&](const fs::path& item) {
        const bool beside = !call.argument("to").isSet();
        const fs::path copy = item.stem().string() + " copy" + item.extension().string();
        fs::path place = beside ? freePlace(item.parent_path() / copy)
                                : placeIn(call, destination(call, "to", item), item.filename());
        std::error_code error;
        fs::copy(item, place, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
        check(item, error);
        return place;
    });
}

// Into the user's trash, with the note from where, as the freedesktop trash specification has it.
fs::path moveToTrash(const fs::path& item)
{
    const fs::path files = folderPath(Symbol::Trash, Symbol::UserDomain).value_or(String()).utf8();
    const fs::path notes = files.parent_path().parent_path() / "info";
    std::error_code error;
    fs::create_directories(files, error);
    fs::create_directories(notes, error);
    fs::path place = freePlace(files / item.filename());
    moveTo(item, place);
    const std::time_t now = std::time(nullptr);
    std::tm local {};
    localtime_r(&now, &local);
    char date[32];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    std::ofstream(notes / (place.filename().string() + ".trashinfo"))
        << "[Trash Info]\nPath="
        << URL::fileURLWithPath(String::fromUtf8(item.string())).absoluteString().utf8().substr(7)
        << "\nDeletionDate=" << date << '\n';
    return place;
}

Datum deleteItem(CommandCall& call)
{
    return changeEach(call, [&](const fs::path& item) {
        std::error_code ignored;
        if (!fs::exists(fs::symlink_status(item, ignored)))
            failChange(item, std::make_error_code(std::errc::no_such_file_or_directory));
        return moveToTrash(item);
    });
}

Datum makeItem(CommandCall& call)
{
    const Datum wanted = call.direct;
    const Symbol itemClass = wanted.is(Kind::Class) ? wanted.asSymbol() : Symbol::None;
    if (itemClass != Symbol::Folder && itemClass != Symbol::File)
        fail(ScriptErrorNumber::CannotGet, String(u"Can’t make an element of that class."));
    const Datum& at = call.argument("at");
    const fs::path folder = at.isSet()
        ? pathOf(call.interpreter, call.interpreter.value(at))
        : fs::path(folderPath(Symbol::DesktopFolder, Symbol::UserDomain).value_or(String()).utf8());
    const Datum properties = call.interpreter.value(call.argument("with properties"));
    const auto* record = properties.get<Record>();
    const Datum* name = record ? record->find(Symbol::Name) : nullptr;
    const fs::path place
        = name ? folder / requireText(call.interpreter, *name).utf8() : freePlace(folder / "untitled folder");
    std::error_code error;
    if (fs::exists(fs::symlink_status(place, error)))
        failChange(place, std::make_error_code(std::errc::file_exists));
    if (itemClass == Symbol::Folder)
        fs::create_directory(place, error);
    else if (!std::ofstream(place))
        error = std::make_error_code(std::errc::permission_denied);
    check(place, error);
    return fileObject(place);
}

constexpr CommandParameter moveParameters[] = { { "to" }, { "replacing", true }, { "positioned at" } };
constexpr CommandParameter makeParameters[] = { { "at" }, { "with properties" }, { "with data" }, { "to" } };

constexpr CommandSpec commands[] = {
    { .name = "move",
        .perform = moveItem,
        .parameters = moveParameters,
        .needsDirect = true,
        .isOfFiles = true },
    { .name = "duplicate",
        .perform = duplicateItem,
        .parameters = moveParameters,
        .needsDirect = true,
        .isOfFiles = true },
    { .name = "delete", .perform = deleteItem, .parameters = {}, .needsDirect = true, .isOfFiles = true },
    { .name = "make new",
        .perform = makeItem,
        .parameters = makeParameters,
        .bindsTightly = true,
        .isOfFiles = true },
};

} // namespace

std::span<const CommandSpec> fileApplicationCommands() { return commands; }

bool setFileProperty(Interpreter& interpreter, const Datum& item, Symbol name, const Datum& value)
{
    auto* file = item.get<FileObject>();
    if (!file || name != Symbol::Name)
        return false;
    const fs::path path = pathOf(interpreter, item);
    const fs::path renamed = path.parent_path() / requireText(interpreter, value).utf8();
    std::error_code error;
    if (fs::exists(fs::symlink_status(renamed, error)))
        failChange(renamed, std::make_error_code(std::errc::file_exists));
    fs::rename(path, renamed, error);
    check(path, error);
    file->path = fileObject(renamed).as<FileObject>().path;
    return true;
}

} // namespace caddis::applescript
