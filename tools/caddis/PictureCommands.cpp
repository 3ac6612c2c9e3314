#include "PictureCommands.h"

#include "Output.h"
#include "PictureOutput.h"
#include "ValuePrinter.h"
#include "client/HelperProxy.h"

#include <cstdio>

namespace caddis::tool {

namespace {

constexpr std::uint32_t UsualSize = 256; // Pixels.

ExitCode nothing(const std::string& file, const char* reason)
{
    std::fprintf(stderr, "%s: %s\n", file.c_str(), reason);
    return NothingFound;
}

ExitCode showThumbnail(const Invocation& invocation, const HelperProxy& helper, const std::string& file)
{
    const auto reply = helper.imageWithContentsOfFile(
        absolutePath(file), { .maxThumbnailSize = invocation.size.value_or(UsualSize) });
    if (invocation.json)
        print(json(Dictionary {
                  { u"file"_s, String::fromUtf8(file) }, { u"picture"_s, reply ? Value(*reply) : Value() } })
            + '\n');
    if (!reply)
        return nothing(file, "this is no picture");
    const Value* const picture = reply->find(u"Thumbnail");
    const auto* const tiff = picture ? picture->as<Data>() : nullptr;
    if (!invocation.json && !invocation.output)
        print(file + '\n' + lines(withEntriesOf(*reply, u"Properties")));
    if (!invocation.output)
        return Success;
    if (!tiff)
        return nothing(file, "this picture can't be drawn");
    return writePicture(*tiff, pictureFile(invocation, file)) ? Success : Usage;
}

ExitCode showPreview(const Invocation& invocation, const HelperProxy& helper, const std::string& file)
{
    const auto tiff
        = helper.previewForFile(absolutePath(file), invocation.size.value_or(UsualSize), invocation.icon);
    if (!tiff)
        return nothing(file, "nothing here can show it");
    return writePicture(*tiff, pictureFile(invocation, file)) ? Success : Usage;
}

// The worst of what came of the files.
template <typename Show> ExitCode forEachFile(const Invocation& invocation, Show show)
{
    if (!hasPlaceForAll(invocation))
        return Usage;
    const HelperProxy helper(invocation.helper());
    ExitCode code = Success;
    for (const std::string& file : invocation.arguments) {
        code = std::max(code, show(invocation, helper, file));
        if (code == Usage)
            break;
    }
    return code;
}

} // namespace

ExitCode thumbnail(const Invocation& invocation) { return forEachFile(invocation, showThumbnail); }

ExitCode preview(const Invocation& invocation)
{
    if (invocation.arguments.size() > 1 && !invocation.output) {
        std::fputs("several pictures go into a folder: -o FOLDER/\n", stderr);
        return Usage;
    }
    return forEachFile(invocation, showPreview);
}

} // namespace caddis::tool
