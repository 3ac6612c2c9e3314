// The server of the benchmarks.

#include "platform/ipc/Server.h"

#include <numeric>

namespace {

using namespace caddis;

std::optional<Value> take(const Arguments& arguments)
{
    const auto bytes = arguments[0]->as<Data>()->span();
    return std::accumulate(bytes.begin(), bytes.end(), std::int64_t(0));
}

std::optional<Value> give(const Arguments&)
{
    static const Data data = Data::adopt(std::vector<std::uint8_t>(300 << 20, 1));
    return data;
}

} // namespace

int main()
{
    Server server({ .path = "/Peer",
        .interface = "org.caddis.Peer",
        .introspection = {},
        .methods = {
            { "Ping", "", "", [](const Arguments&) { return std::nullopt; } },
            { "Take", "v", "av", take },
            { "Give", "", "av", give },
        } });
    if (!server.registerName(u"Peer"_s))
        return 3;
    server.run();
}
