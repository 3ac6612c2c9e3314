#include "importers/ImporterDiscovery.h"

#include "platform/base/Log.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/InstallRoots.h"
#include "platform/files/PropertyList.h"
#include "platform/plugin/Bundle.h"
#include "platform/task/ChildProcess.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr std::u16string_view SystemFolder = u"/System/Library/Spotlight";
constexpr std::u16string_view LocalFolder = u"/Library/Spotlight";
constexpr std::u16string_view MailImporter = u"/System/Library/Spotlight/Mail.mdimporter";
constexpr std::size_t MostOutput = 4 << 20;
constexpr std::chrono::milliseconds ToolDeadline { 5000 };

String userFolder()
{
    return stringByAppendingPathComponent(InstallRoots::userLibraryDirectory(), u"Spotlight");
}

bool isDynamic(const String& path)
{
    const auto bundle = Bundle::bundleWithPath(path);
    return bundle && bundle->isDynamicallyRegistered();
}

// What the tool prints on standard error, which is read while it runs. Nil when it can't be run.
std::optional<String> outputOfTool()
{
    const auto tool = fileSystemRepresentation(InstallRoots::real(u"/usr/bin/mdimport"_s));
    if (!tool)
        return std::nullopt;
    ChildCommand command;
    command.arguments = { *tool, "-L" };
    command.deadline = ToolDeadline;
    command.mostOutput = MostOutput;
    const auto result = runChild(command);
    if (result.outcome != ChildResult::Outcome::Exited)
        return std::nullopt;
    return String::fromStrictUtf8(result.errorOutput);
}

// The list in the tool's output; empty when there is none, or when it is not ASCII.
std::vector<String> listIn(const String& output)
{
    const std::size_t start = output.view().find(u"(\n");
    const String text = start == std::u16string_view::npos ? String() : output.substringFrom(start);
    const bool isAscii = std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
    const auto list = isAscii ? PropertyList::readOldStyle(text) : std::nullopt;
    std::vector<String> paths;
    if (const auto* items = list ? list->as<Array>() : nullptr) {
        for (const Value& item : *items) {
            if (const auto* path = item.as<String>())
                paths.push_back(*path);
        }
    }
    return paths;
}

// Kept on purpose: each pass walks the list from its end, so a group stands in the reverse of the tool's
// order.
std::vector<String> ordered(std::vector<String> list)
{
    std::vector<String> result;
    for (const String& prefix : { userFolder(), String(LocalFolder), String(SystemFolder) }) {
        for (std::size_t index = list.size(); index-- > 0;) {
            const String path = list[index];
            const bool isUnused = isDynamic(path);
            const bool isInGroup = path.view().starts_with(prefix.view());
            if (!isUnused && isInGroup)
                result.push_back(path);
            if (isUnused || isInGroup)
                list.erase(list.begin() + std::ptrdiff_t(index));
        }
    }
    result.insert(result.end(), list.begin(), list.end());
    return result;
}

} // namespace

std::vector<String> importersInFolder(const String& folder)
{
    std::vector<String> result;
    for (const String& name :
        FileSystem::contentsOfDirectory(InstallRoots::real(folder)).value_or(std::vector<String>())) {
        const String path = stringByAppendingPathComponent(folder, name);
        if (pathExtension(name) == u"mdimporter" && !isDynamic(path))
            result.push_back(path);
    }
    return result;
}

std::vector<String> importersOfApplications(const String& folder)
{
    std::vector<String> result;
    for (const String& name :
        FileSystem::contentsOfDirectory(InstallRoots::real(folder)).value_or(std::vector<String>())) {
        // Kept on purpose: the paths keep the "~" of the folder; it is expanded where they are opened.
        const String inside = stringByAppendingPathComponent(
            stringByAppendingPathComponent(folder, name), u"Contents/Library/Spotlight");
        for (const String& path : importersInFolder(inside))
            result.push_back(path);
    }
    return result;
}

std::vector<String> importersInAllFolders()
{
    std::vector<String> result;
    const auto add
        = [&](const std::vector<String>& paths) { result.insert(result.end(), paths.begin(), paths.end()); };
    for (const std::u16string_view folder :
        { u"~/Applications", u"/Applications", u"/Developer/Applications" })
        add(importersOfApplications(String(folder)));
    for (const String& folder : { userFolder(), String(LocalFolder), String(SystemFolder) })
        add(importersInFolder(folder));
    return result;
}

std::vector<String> discoveredImporters()
{
    const auto output = outputOfTool();
    if (!output)
        return {};
    const std::vector<String> list = listIn(*output);
    std::vector<String> result = ordered(list);
    const String mail(MailImporter);
    if (std::find(result.begin(), result.end(), mail) == result.end()
        && FileSystem::exists(InstallRoots::real(mail))) {
        result.insert(result.begin(), mail);
        log(u"Added: %@", mail);
    }
    if (list.empty()) {
        const auto found = importersInAllFolders();
        result.insert(result.end(), found.begin(), found.end());
    }
    return result;
}

} // namespace caddis
