#pragma once

#include "platform/base/String.h"
#include "platform/image/Bitmap.h"
#include "platform/preview/KeyFile.h"

#include <chrono>
#include <span>
#include <unordered_map>

/// Programs that make thumbnails, as the desktop's packages declare them:
///
///     [Thumbnailer Entry]
///     TryExec=evince-thumbnailer
///     Exec=evince-thumbnailer -s %s %u %o
///     MimeType=application/pdf;application/x-dvi
///
/// %i is the file's path, %u its URI, %o where the PNG goes, %s its longest side in pixels, %% a "%".
namespace caddis {

class Thumbnailers {
public:
    /// Those of the folder "thumbnailers" in each of these folders; of two for one type, and of two files of
    /// one name, the first counts.
    explicit Thumbnailers(std::span<const String> dataFolders);

    /// What the program for that MIME type makes of the file; nil: there is none, it is not installed, it
    /// fails, or it takes too long.
    ///
    /// It runs in a sandbox (`bwrap`) in which it sees the system's programs, the one file and an empty
    /// folder, and no network. Without the sandbox no program runs.
    std::optional<Bitmap> thumbnail(
        const String& path, const String& type, std::uint32_t side, std::chrono::milliseconds deadline) const;

    /// The `Exec` line for a type; null for a type without a program.
    const std::string* commandForType(const String& type) const;

private:
    void add(const KeyFile& entry);

    std::unordered_map<String, std::string> m_commands;
};

/// What a command's places stand for.
struct ThumbnailerFiles {
    std::string input;
    std::string uri;
    std::string output;
    std::string side;
};

/// The words of an `Exec` line (Desktop Entry Specification, 7), places filled in; empty when a quote is left
/// open.
std::vector<std::string> wordsOfCommand(std::string_view command, const ThumbnailerFiles& files);

} // namespace caddis
