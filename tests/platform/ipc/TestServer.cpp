// A server for the tests: TestServer NAME. Ends at once, with status 3, when the name is taken.

#include "platform/ipc/Server.h"

#include "platform/base/Exception.h"
#include "platform/base/LeftOut.h"
#include "support/TestProtocol.h"

#include <chrono>
#include <stdexcept>
#include <thread>

namespace {

using namespace caddis;
using std::chrono::steady_clock;

const auto started = steady_clock::now();

std::optional<Value> options(const Arguments& arguments)
{
    if (!arguments[0])
        return std::nullopt;
    return Dictionary { { u"value"_s, *arguments[0] }, { u"count"_s, *arguments[1] },
        { u"flag"_s, *arguments[2] } };
}

std::optional<Value> record(const Arguments& arguments)
{
    return Dictionary { { u"record"_s, arguments[0].value_or(Null()) } };
}

std::optional<Value> zeros(const Arguments& arguments)
{
    return Data::adopt(
        std::vector<std::uint8_t>(static_cast<std::size_t>(*arguments[0]->as<std::int64_t>())));
}

std::optional<Value> sleepFor(const Arguments& arguments)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(*arguments[0]->as<std::int64_t>()));
    return std::nullopt;
}

std::optional<Value> leaveOut(const Arguments& arguments)
{
    for (std::int64_t count = 0; count < *arguments[0]->as<std::int64_t>(); ++count) {
        noteLeftOut(format(u"thing %d", count));
        noteLeftOut(u"thing 0");
    }
    return true;
}

constexpr const char* Introspection = R"(<node><interface name="org.caddis.Test">
<method name="Echo"><arg type="v" direction="in"/><arg type="av" direction="out"/></method>
<method name="Sleep"><arg type="x" direction="in"/></method>
</interface></node>)";

RemoteObject testObject()
{
    return { .path = TestProtocol.path,
        .interface = TestProtocol.interface,
        .introspection = Introspection,
        .methods = {
            { "Echo", "v", "av", [](const Arguments& arguments) { return arguments[0]; } },
            { "Options", "vxb", "aa{sv}", options },
            { "Record", "(uay)", "a{sv}", record },
            { "Zeros", "x", "av", zeros },
            { "Sleep", "x", "", sleepFor },
            { "Throw", "", "b",
                [](const Arguments&) -> Value { throw std::runtime_error("not \xFF UTF-8"); } },
            { "Deny", "", "b",
                [](const Arguments&) -> Value { throw Exception(String(AccessDeniedError), u"no"_s); } },
            { "StillBusy", "", "b",
                [](const Arguments&) {
                    return steady_clock::now() - started < std::chrono::milliseconds(500);
                } },
            { "LeaveOut", "x", "b", leaveOut },
            { "Exit", "", "", [](const Arguments&) -> std::optional<Value> { std::exit(0); } },
        } };
}

} // namespace

int main(int argumentCount, char** arguments)
{
    Server server(testObject());
    if (argumentCount != 2 || !server.registerName(String::fromUtf8(arguments[1])))
        return 3;
    server.run();
}
