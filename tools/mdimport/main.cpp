// mdimport: the importers that are installed, and what they give. As with the platform's tool of that name
// everything is printed on standard error.
//
//     mdimport -L          the installed importers, as an old-style property list
//     mdimport -d1 FILE…   the type of each file and the importer that takes it
//     mdimport -d2 FILE…   also its attributes
//
// -n is accepted and means nothing.

#include "importers/ImporterDiscovery.h"
#include "importers/MetaDataImporter.h"
#include "platform/base/Paths.h"
#include "platform/files/ContentType.h"
#include "platform/files/PropertyList.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <unistd.h>
#include <vector>

using namespace caddis;

namespace {

int usage()
{
    std::fputs("usage: mdimport -L | mdimport [-d1|-d2] FILE…\n", stderr);
    return 2;
}

int list()
{
    Array paths;
    for (const String& path : importersInAllFolders())
        paths.emplace_back(path);
    const std::string text = PropertyList::writeOldStyle(Value(std::move(paths)));
    std::fprintf(stderr, "mdimport[%d] Paths: id(%u) %s\n", getpid(), getuid(), text.c_str());
    return EXIT_SUCCESS;
}

bool show(const std::string& file, bool withAttributes)
{
    const String path = String::fromUtf8(std::filesystem::absolute(file).string());
    MetaDataImporter& host = MetaDataImporter::sharedImporter();
    const auto orNone = [](const std::optional<String>& text) { return text ? text->utf8() : "none"; };
    std::fprintf(stderr, "%s: type %s, importer %s\n", file.c_str(), orNone(contentTypeOfItem(path)).c_str(),
        orNone(host.importerOfFileAtPath(path)).c_str());
    if (!withAttributes)
        return true;
    const auto metaData = host.metaDataOfFileAtPath(path);
    if (metaData)
        std::fprintf(stderr, "%s\n", PropertyList::writeOldStyle(*metaData).c_str());
    return metaData.has_value();
}

} // namespace

int main(int argc, char* argv[])
{
    bool withAttributes = false;
    std::vector<std::string> files;
    for (const std::string_view argument : std::vector<std::string_view>(argv + 1, argv + argc)) {
        if (argument == "-L")
            return list();
        if (argument == "-d1" || argument == "-d2")
            withAttributes = argument == "-d2";
        else if (argument.starts_with('-') && argument != "-n")
            return usage();
        else if (argument != "-n")
            files.emplace_back(argument);
    }
    if (files.empty())
        return usage();
    bool all = true;
    for (const std::string& file : files)
        all = show(file, withAttributes) && all;
    return all ? EXIT_SUCCESS : EXIT_FAILURE;
}
