// What the desktop and documents have to say for previews: key files, command lines, texts of PNG files, the
// pictures inside archives.
//
// Invariants: parts of a list are neither empty nor wider than their value; a command's words hold its
// places' fillings and nothing is made of an open quote; a PNG's text is no longer than the file; an archive
// yields at most three pictures.

#include "FileInput.h"
#include "Fuzz.h"
#include "platform/preview/EmbeddedThumbnail.h"
#include "platform/preview/KeyFile.h"
#include "platform/preview/ThumbnailCache.h"
#include "platform/preview/Thumbnailers.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const caddis::KeyFile file(bytes);
    const auto value = file.value("Thumbnailer Entry", "MimeType");
    for (const std::string_view part : file.list("Thumbnailer Entry", "MimeType", ';'))
        INVARIANT(!part.empty() && value && part.size() <= value->size());
    file.number("Thumbnailer Entry", "Size");

    const std::string command(file.value("Thumbnailer Entry", "Exec").value_or(bytes.substr(0, 200)));
    const auto words = caddis::wordsOfCommand(command, { "<input>", "<uri>", "<output>", "<side>" });
    INVARIANT(words.size() <= command.size());
    if (command.find_first_of("\"\\ %") == command.npos && !command.empty())
        INVARIANT(words.size() == 1 && words[0] == command);
    INVARIANT(std::ranges::count(command, '"') != 1 || command.find('\\') != command.npos || words.empty()
        || command.find("%\"") != command.npos);

    const auto text = caddis::textInPNG(caddis::Data::copyOf(bytes), "Thumb::URI");
    INVARIANT(!text || text->size() < size);
    INVARIANT(caddis::embeddedThumbnails(caddis::fileWith(data, size)).size() <= 3);
    return 0;
}
