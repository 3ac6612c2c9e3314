#include "platform/script/applescript/FileSuite.h"

#include "platform/script/HFSPath.h"
#include "platform/script/LongDateTime.h"
#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/Elements.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/FolderPaths.h"
#include "platform/script/applescript/SourceText.h"
#include "platform/script/applescript/TextComparison.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>

namespace caddis::applescript {

namespace {

namespace fs = std::filesystem;

std::string withoutSlash(const String& path)
{
    std::string bytes = path.utf8();
    while (bytes.size() > 1 && bytes.ends_with('/'))
        bytes.pop_back();
    return bytes;
}

Datum itemAt(const fs::path& path)
{
    std::error_code ignored;
    const bool folder = fs::is_directory(path, ignored);
    std::string bytes = path.string();
    if (folder && !bytes.ends_with('/'))
        bytes += '/';
    return make<FileObject>(folder ? Symbol::Folder : Symbol::File, String::fromUtf8(bytes));
}

// Where an application's elements stand: the desktop for "Finder", as for the platform's.
String folderOf(const Datum& container)
{
    if (const auto* file = container.get<FileObject>())
        return file->path;
    return folderPath(Symbol::DesktopFolder, Symbol::UserDomain).value_or(String(u"/"));
}

bool isWanted(const fs::directory_entry& entry, Symbol wanted)
{
    std::error_code ignored;
    const bool folder = entry.is_directory(ignored);
    switch (wanted) {
    case Symbol::Folder:
    case Symbol::Container:
        return folder;
    case Symbol::File:
        return !folder;
    default:
        return true;
    }
}

// What stands in a folder, sorted; with Iterator recursive, in the folders inside it too (but not behind
// links).
template <typename Iterator>
Datum entriesOf(Interpreter& interpreter, const Datum& container, Symbol wanted = Symbol::Item)
{
    std::error_code error;
    std::vector<fs::path> paths;
    const Iterator end;
    Iterator at(folderOf(container).utf8(), fs::directory_options::skip_permission_denied, error);
    for (; !error && at != end; at.increment(error)) {
        interpreter.step();
        const bool isHidden = at->path().filename().string().starts_with('.');
        if constexpr (std::is_same_v<Iterator, fs::recursive_directory_iterator>) {
            if (isHidden)
                at.disable_recursion_pending();
        }
        if (!isHidden && isWanted(*at, wanted))
            paths.push_back(at->path());
        interpreter.heap().require(paths.size() * sizeof(fs::path));
    }
    std::ranges::sort(paths);
    Datum list = make<List>();
    list.as<List>().areElements = true;
    for (const fs::path& path : paths)
        list.as<List>().append(itemAt(path));
    return list;
}

// A name inside the container, or a whole path.
Datum itemNamed(const Datum& container, const Selector& selector, const String& name)
{
    const bool whole = name.view().starts_with(u'/') || name.view().starts_with(u'~')
        || name.view().find(u':') != std::u16string_view::npos;
    String path;
    if (name.view().starts_with(u'~'))
        path = format(u"%@%@", folderPath(Symbol::HomeFolder, Symbol::UserDomain).value_or(String()),
            name.substringFrom(1));
    else if (name.view().starts_with(u'/'))
        path = name;
    else
        path = whole ? posixPath(name)
                     : format(u"%@/%@", String::fromUtf8(withoutSlash(folderOf(container))), name);
    std::error_code ignored;
    if (!fs::exists(path.utf8(), ignored))
        failGet(selectorText(selector), container);
    return itemAt(withoutSlash(path));
}

std::int64_t dateOf(const timespec& time)
{
    return longDateTimeFromDate(Date::fromUnixSeconds(static_cast<double>(time.tv_sec)));
}

String nameOf(const fs::path& path)
{
    return path == "/" ? String(StartupDiskName) : String::fromUtf8(path.filename().string());
}

std::optional<Datum> statProperty(const fs::path& path, Symbol name)
{
    struct stat status { };
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    switch (name) {
    case Symbol::Size:
    case Symbol::PhysicalSize:
        return Datum::number(status.st_size);
    case Symbol::CreationDate:
        return make<DateObject>(dateOf(status.st_ctim));
    case Symbol::ModificationDate:
        return make<DateObject>(dateOf(status.st_mtim));
    case Symbol::Locked:
        return Datum::boolean((status.st_mode & S_IWUSR) == 0);
    default:
        return std::nullopt;
    }
}

std::optional<Datum> itemProperty(const FileObject& item, Symbol name)
{
    const fs::path path(withoutSlash(item.path));
    std::error_code ignored;
    const bool folder = fs::is_directory(path, ignored);
    switch (name) {
    case Symbol::Name:
    case Symbol::DisplayedName:
        return Datum::text(nameOf(path));
    case Symbol::NameExtension: {
        const std::string extension = path.extension().string();
        return Datum::text(String::fromUtf8(extension.empty() ? extension : extension.substr(1)));
    }
    case Symbol::PosixPath:
        return Datum::text(
            folder && !item.path.view().ends_with(u'/') ? format(u"%@/", item.path) : item.path);
    case Symbol::Path:
        return Datum::text(hfsPath(item.path));
    case Symbol::Url:
        return Datum::text(URL::fileURLWithPath(item.path).absoluteString());
    case Symbol::Container:
        return itemAt(path.parent_path());
    case Symbol::Class:
        return Datum::classNamed(item.fileClass);
    case Symbol::Kind:
        return Datum::text(folder ? u"Folder" : u"Document");
    case Symbol::Visible:
        return Datum::boolean(!path.filename().string().starts_with('.'));
    case Symbol::ExtensionHidden:
    case Symbol::PackageFolder:
        return Datum::boolean(false);
    case Symbol::FileType:
    case Symbol::FileCreator:
        return Datum::missing();
    case Symbol::Exists:
        return Datum::boolean(fs::exists(path, ignored));
    default:
        return statProperty(path, name);
    }
}

std::optional<Datum> applicationProperty(const ApplicationObject& application, Symbol name)
{
    switch (name) {
    case Symbol::Name:
        return Datum::text(application.name);
    case Symbol::Class:
        return Datum::classNamed(Symbol::Application);
    case Symbol::Version:
        return Datum::text(u"1.0");
    case Symbol::Running:
        return Datum::boolean(application.name.isEmpty() || isFileApplication(application.name)
            || (application.terms && application.terms->application().isRunning()));
    case Symbol::Frontmost:
        return Datum::boolean(false);
    case Symbol::Id:
        return Datum::text(application.name);
    case Symbol::StartupDisk:
        return make<FileObject>(Symbol::Disk, String(u"/"));
    case Symbol::Home:
        return make<FileObject>(
            Symbol::Folder, folderPath(Symbol::HomeFolder, Symbol::UserDomain).value_or(String()));
    case Symbol::Selection:
        return make<List>();
    default:
        break;
    }
    if (const auto path = folderPath(name, Symbol::UserDomain))
        return make<FileObject>(Symbol::Folder, *path);
    return std::nullopt;
}

} // namespace

bool isFileApplication(const String& name)
{
    return textsAreEqual(name, String(u"Finder")) || textsAreEqual(name, String(u"System Events"));
}

void requireApplication(const Datum& application)
{
    const auto* object = application.get<ApplicationObject>();
    if (object && !object->name.isEmpty() && !object->terms && !isFileApplication(object->name))
        fail(ScriptErrorNumber::CannotGet, format(u"Can’t get %@.", sourceText(application)));
}

Datum getFileElement(Interpreter& interpreter, const Datum& container, const Selector& selector)
{
    requireApplication(container);
    if (selector.form == Selector::Form::Named || selector.key.is(Kind::File)) {
        const Datum& key = selector.key;
        return key.is(Kind::File) ? itemAt(withoutSlash(key.as<FileObject>().path))
                                  : itemNamed(container, selector, requireText(interpreter, key));
    }
    if (selector.name == Symbol::Disk) {
        const Datum disks = make<List>(std::vector<Datum> { make<FileObject>(Symbol::Disk, String(u"/")) });
        disks.as<List>().areElements = true;
        Selector items = selector;
        items.name = Symbol::Item;
        return getListElement(interpreter, disks, items);
    }
    const Datum entries = entriesOf<fs::directory_iterator>(interpreter, container, selector.name);
    Selector items = selector;
    items.name = Symbol::Item;
    return getListElement(interpreter, entries, items);
}

std::optional<Datum> fileProperty(Interpreter& interpreter, const Datum& item, Symbol name)
{
    if (const auto* file = item.get<FileObject>()) {
        if (name == Symbol::EntireContents)
            return entriesOf<fs::recursive_directory_iterator>(interpreter, item);
        return itemProperty(*file, name);
    }
    const auto& application = item.as<ApplicationObject>();
    if (name != Symbol::Running && name != Symbol::Name && name != Symbol::Class)
        requireApplication(item);
    return applicationProperty(application, name);
}

} // namespace caddis::applescript
