#include "WebCommands.h"

#include "Output.h"
#include "ValuePrinter.h"
#include "client/HelperProxy.h"

#include <cstdio>

namespace caddis::tool {

namespace {

Dictionary askHelper(const Invocation& invocation, const std::string& file)
{
    return HelperProxy(invocation.helper()).searchableTextOfWebArchive(absolutePath(file));
}

} // namespace

std::optional<String> textOfWebArchive(const Invocation& invocation, const std::string& file)
{
    return askHelper(invocation, file).stringForKey(u"String");
}

ExitCode webarchive(const Invocation& invocation)
{
    const std::string& file = invocation.arguments.front();
    const Dictionary reply = askHelper(invocation, file);
    const auto found = reply.stringForKey(invocation.source ? u"Source" : u"String");
    if (!found) {
        std::fprintf(stderr, "%s: nothing could be read\n", file.c_str());
        return NothingFound;
    }
    const std::string text = (invocation.json ? json(reply) : found->utf8()) + '\n';
    if (!invocation.output)
        print(text);
    return !invocation.output || writeData(Data::adopt(text), invocation.output) ? Success : Usage;
}

} // namespace caddis::tool
