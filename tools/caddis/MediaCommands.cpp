#include "MediaCommands.h"

#include "Output.h"
#include "PictureOutput.h"
#include "ValuePrinter.h"
#include "client/HelperProxy.h"
#include "platform/base/Geometry.h"

#include <cstdio>

namespace caddis::tool {

namespace {

bool isKnown(const Dictionary& reply)
{
    const Value* const duration = reply.find(u"Duration");
    const auto* const seconds = duration ? duration->as<double>() : nullptr; // Messages have no other.
    return (seconds && *seconds > 0) || reply.stringForKey(u"Size") != stringFromSize({});
}

bool writePoster(const Invocation& invocation, const Dictionary& reply, const std::string& file)
{
    const Value* const poster = reply.find(u"Thumbnail");
    const auto* const tiff = poster ? poster->as<Data>() : nullptr;
    if (!tiff)
        std::fprintf(stderr, "%s: it shows no picture\n", file.c_str());
    return tiff && writePicture(*tiff, pictureFile(invocation, file));
}

} // namespace

ExitCode movie(const Invocation& invocation)
{
    if (!hasPlaceForAll(invocation))
        return Usage;
    const HelperProxy helper(invocation.helper());
    ExitCode code = Success;
    for (const std::string& file : invocation.arguments) {
        const Dictionary reply = helper.posterImageForMovieWithFile(absolutePath(file));
        if (!isKnown(reply))
            code = NothingFound;
        if (invocation.json)
            print(json(Dictionary { { u"file"_s, String::fromUtf8(file) }, { u"movie"_s, reply } }) + '\n');
        else if (!isKnown(reply))
            print(file + "\n  this is no movie\n");
        else if (!invocation.output)
            print(file + '\n' + lines(withEntriesOf(reply, u"Metadata")));
        if (invocation.output && !writePoster(invocation, reply, file))
            code = NothingFound;
    }
    return code;
}

ExitCode pdfOfImage(const Invocation& invocation)
{
    if (invocation.arguments.size() != 1) {
        std::fputs("one file at a time\n", stderr);
        return Usage;
    }
    const HelperProxy helper(invocation.helper());
    const auto pdf = helper.PDFImageRepOfFile(absolutePath(invocation.arguments.front()));
    if (!pdf) {
        std::fprintf(stderr, "%s: this picture can't be had as PDF\n", invocation.arguments.front().c_str());
        return NothingFound;
    }
    return writeData(*pdf, invocation.output) ? Success : Usage;
}

} // namespace caddis::tool
