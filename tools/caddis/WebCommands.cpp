#include "WebCommands.h"

#include "Input.h"
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

// Nil, with a word on standard error, for a base that is no URL.
std::optional<HTMLRequest> htmlRequest(const Invocation& invocation)
{
    const std::string& file = invocation.arguments.front();
    HTMLRequest request;
    request.allowRemoteRequest = invocation.allowRemote;
    if (invocation.base)
        request.baseURL = URL::fromString(String::fromUtf8(*invocation.base));
    else if (file != "-")
        request.baseURL = URL::fileURLWithPath(absolutePath(file));
    if (invocation.charset)
        request.charset = String::fromUtf8(*invocation.charset);
    if (!invocation.base || request.baseURL)
        return request;
    std::fprintf(stderr, "%s: no URL\n", invocation.base->c_str());
    return std::nullopt;
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

ExitCode html2rtfd(const Invocation& invocation)
{
    const std::string& file = invocation.arguments.front();
    const auto request = htmlRequest(invocation);
    if (!request)
        return Usage;
    const auto page = contentsOf(file);
    const HelperProxy helper(invocation.helper());
    const auto rtfd = page ? helper.RTFDWithHTML(*page, *request) : std::nullopt;
    if (!rtfd) {
        std::fprintf(stderr, "%s: nothing could be read\n", file.c_str());
        return NothingFound;
    }
    if (!invocation.output || !invocation.output->ends_with(".rtfd"))
        return writeData(*rtfd, invocation.output) ? Success : Usage;
    if (helper.writeRTFDData(*rtfd, absolutePath(*invocation.output)))
        return Success;
    std::fprintf(stderr, "%s: the package can't be written\n", invocation.output->c_str());
    return Usage;
}

} // namespace caddis::tool
