#include "platform/plugin/Bundle.h"

#include "platform/base/Format.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/InstallRoots.h"
#include "platform/files/MappedFile.h"
#include "platform/files/PropertyList.h"

#include <sys/utsname.h>

namespace caddis {

namespace {

// A plug-in that nobody has filled in yet has this name for its factory.
constexpr std::u16string_view PlaceholderFunction = u"MyFactoryFunction";

std::vector<std::string> factoryFunctions(const Dictionary& info)
{
    std::vector<std::string> names;
    const Value* value = info.find(u"CFPlugInFactories");
    const auto* factories = value ? value->as<Dictionary>() : nullptr;
    if (!factories)
        return names;
    for (const auto& [identifier, function] : *factories) {
        const auto* name = function.as<String>();
        if (name && *name != PlaceholderFunction)
            names.push_back(name->utf8());
    }
    return names;
}

String machineFolder()
{
    utsname system {};
    uname(&system);
    return format(u"Contents/Linux-%s", static_cast<const char*>(system.machine));
}

bool isTrue(std::u16string_view text)
{
    std::string ascii;
    for (const char16_t unit : text)
        ascii += unit < 0x80 ? static_cast<char>(unit | (unit >= u'A' ? 0x20 : 0)) : '?';
    return ascii == "yes" || ascii == "true" || ascii == "1";
}

} // namespace

std::optional<Bundle> Bundle::bundleWithPath(const String& path)
{
    const String folder = InstallRoots::real(path);
    for (const std::u16string_view name : { u"Contents/Info.plist", u"Info.plist" }) {
        auto info = PropertyList::dictionaryWithContentsOfFile(stringByAppendingPathComponent(folder, name));
        if (info)
            return Bundle(path, std::move(*info));
    }
    return std::nullopt;
}

std::optional<String> Bundle::executablePath() const
{
    const auto name = m_info.stringForKey(u"CFBundleExecutable");
    if (!name || name->isEmpty() || name->view().find(u'/') != std::u16string_view::npos)
        return std::nullopt;
    const String folder = InstallRoots::real(m_path);
    for (const String& place : { machineFolder(), u"Contents/Linux"_s, u"Contents"_s, String() }) {
        const String inside = stringByAppendingPathComponent(folder, place);
        for (const String& file : { *name, format(u"lib%@.so", *name) }) {
            String path = stringByAppendingPathComponent(inside, file);
            if (FileSystem::exists(path) && !FileSystem::isDirectory(path))
                return path;
        }
    }
    return std::nullopt;
}

Preflight Bundle::preflight() const
{
    const auto path = executablePath();
    if (!path)
        return Preflight::NoSuchFile;
    const auto file = MappedFile::open(*path);
    return file ? preflightSharedObject(*file, factoryFunctions(m_info)) : Preflight::NotLoadable;
}

bool Bundle::isDynamicallyRegistered() const
{
    const Value* value = m_info.find(u"CFPlugInDynamicRegistration");
    if (!value)
        return false;
    if (const auto* text = value->as<String>())
        return isTrue(*text);
    const auto* yes = value->as<bool>();
    const auto* number = value->as<std::int64_t>();
    return (yes && *yes) || (number && *number != 0);
}

std::vector<String> Bundle::keysOf(std::u16string_view key) const
{
    std::vector<String> keys;
    const Value* value = m_info.find(key);
    if (const auto* dictionary = value ? value->as<Dictionary>() : nullptr) {
        for (const auto& entry : *dictionary)
            keys.push_back(entry.key);
    }
    return keys;
}

} // namespace caddis
