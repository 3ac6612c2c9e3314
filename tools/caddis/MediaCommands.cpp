#include "MediaCommands.h"

#include "Output.h"
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

// What stands under "Metadata" is said beside the rest.
Dictionary flat(const Dictionary& reply)
{
    Dictionary result = reply;
    if (const Value* const metadata = reply.find(u"Metadata")) {
        if (const auto* const entries = metadata->as<Dictionary>()) {
            for (const auto& [key, value] : *entries)
                result.set(key, value);
        }
    }
    result.remove(u"Metadata");
    return result;
}

} // namespace

ExitCode movie(const Invocation& invocation)
{
    const HelperProxy helper(invocation.helper());
    ExitCode code = Success;
    for (const std::string& file : invocation.arguments) {
        const Dictionary reply = helper.posterImageForMovieWithFile(absolutePath(file));
        if (!isKnown(reply))
            code = NothingFound;
        if (invocation.json)
            print(json(Dictionary { { u"file"_s, String::fromUtf8(file) }, { u"movie"_s, reply } }) + '\n');
        else
            print(file + '\n' + (isKnown(reply) ? lines(flat(reply)) : "  this is no movie\n"));
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
