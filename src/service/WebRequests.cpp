#include "service/WebRequests.h"

#include "markup/WebArchiveText.h"

namespace caddis {

Dictionary searchableTextOfWebArchive(const std::optional<String>& path)
{
    const ArchiveText found = searchableTextOfFile(path);
    auto reply = Dictionary::fromPairs({ { u"String", found.text } });
    reply.set(u"Source"_s, found.source ? std::optional<Value>(*found.source) : std::nullopt);
    reply.set(u"URL"_s, found.baseURL ? std::optional<Value>(found.baseURL->absoluteString()) : std::nullopt);
    return reply;
}

} // namespace caddis
