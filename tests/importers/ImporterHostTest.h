#pragma once

#include "importers/MetaDataImporter.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {

inline constexpr const char* Type = "8B08C4BF-415B-11D8-B3F9-0003936726FC";
inline constexpr const char* User = "/home/ada/Library/Spotlight/";
inline constexpr const char* Local = "/Library/Spotlight/";
inline constexpr const char* System = "/System/Library/Spotlight/";

// A whole system in a folder: importers where the platform has them, and a tool that lists what the test
// says. Discovery happens once per process; every case runs in one of its own.
class ImporterHost : public testing::Test {
protected:
    ImporterHost()
    {
        setenv("CADDIS_ROOT", root.path().c_str(), 1);
        setenv("HOME", "/home/ada", 1);
    }

    struct Declared {
        std::string contentType = {};
        std::string extension = {};
        std::vector<std::string> factories = { "PathFactory" };
        std::string more = {};
    };

    void install(const std::string& path, const Declared& declared)
    {
        std::string factories;
        std::string types;
        for (const std::string& function : declared.factories) {
            const std::string identifier
                = "00000000-0000-4000-8000-" + std::to_string(100000000000 + ++count);
            factories.append("\"").append(identifier).append("\" = ").append(function).append("; ");
            types.append("\"").append(identifier).append("\", ");
        }
        const std::string contents = path.substr(1) + "/Contents/";
        root.write(contents + "Info.plist",
            "{ CFBundleExecutable = Test.so; CFPlugInFactories = { " + factories + " }; CFPlugInTypes = { \""
                + Type + "\" = ( " + types
                + " ); }; CFBundleDocumentTypes = ( { CFBundleTypeRole = MDImporter; "
                + "LSItemContentTypes = ( \"" + declared.contentType + "\" ); } ); "
                + "UTExportedTypeDeclarations = ( { UTTypeTagSpecification = { \"public.filename-extension\" "
                  "= "
                + "( \"" + declared.extension + "\" ); }; } ); " + declared.more + " }");
        const auto folder = root.path() / contents / "Linux";
        std::filesystem::create_directories(folder);
        std::filesystem::copy_file(CADDIS_TEST_IMPORTER, folder / "Test.so");
    }

    void setTool(const std::string& list)
    {
        const String tool = root.write("usr/bin/mdimport", "#!/bin/sh\ncat >&2 <<'END'\n" + list + "\nEND\n");
        std::filesystem::permissions(tool.utf8(), std::filesystem::perms::owner_all);
    }

    static std::string listOf(const std::vector<std::string>& paths)
    {
        std::string text = "mdimport[1] Paths: id(0) (\n";
        for (const std::string& path : paths)
            text += "    \"" + path + "\",\n";
        return text + ")";
    }

    static std::string order(const MetaDataImporter& host)
    {
        std::string text;
        for (const String& path : host.MDImporterArray())
            text += path.utf8() + ' ';
        return text;
    }

    TemporaryFolder root;
    LogCapture capture;
    MetaDataImporter host;
    long count = 0;
};

} // namespace caddis
