#include "FileCommands.h"

#include "Output.h"
#include "ValuePrinter.h"
#include "client/HelperProxy.h"
#include "platform/files/Bookmark.h"

#include <cstdio>

namespace caddis::tool {

ExitCode info(const Invocation& invocation)
{
    const HelperProxy helper(invocation.helper());
    ExitCode code = Success;
    for (const std::string& file : invocation.arguments) {
        const auto metadata = helper.metaDataForFile(absolutePath(file));
        if (!metadata)
            code = NothingFound;
        if (invocation.json) {
            const Value found = metadata ? Value(*metadata) : Value();
            print(
                json(Dictionary { { u"file"_s, String::fromUtf8(file) }, { u"metadata"_s, found } }) + '\n');
        } else
            print(file + '\n' + (metadata ? lines(*metadata) : "  nothing is known of this file\n"));
    }
    return code;
}

ExitCode supports(const Invocation& invocation)
{
    const HelperProxy helper(invocation.helper());
    ExitCode code = Success;
    for (const std::string& file : invocation.arguments) {
        const bool supported = helper.supportsFile(absolutePath(file));
        if (!supported)
            code = NothingFound;
        if (invocation.json)
            print(json(Dictionary { { u"file"_s, String::fromUtf8(file) }, { u"supported"_s, supported } })
                + '\n');
        else
            print((supported ? "yes  " : "no   ") + file + '\n');
    }
    return code;
}

ExitCode bookmark(const Invocation& invocation)
{
    if (invocation.arguments.size() != 1) {
        std::fputs("one file at a time\n", stderr);
        return Usage;
    }
    const auto data = bookmarkDataForPath(absolutePath(invocation.arguments.front()));
    if (!data) {
        std::fprintf(stderr, "%s: there is no such file\n", invocation.arguments.front().c_str());
        return NothingFound;
    }
    return writeData(*data, invocation.output) ? Success : Usage;
}

} // namespace caddis::tool
