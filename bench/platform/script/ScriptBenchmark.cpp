// Scripts: a call through a warm helper, the interpreter's loop beside Lua's, and the parser.
//
// Where no other program does the same, the yardstick is a budget: it takes exactly the time that is allowed.

#include "client/HelperProxy.h"
#include "client/HelperTask.h"
#include "client/OstraImExport.h"
#include "platform/script/applescript/AppleScriptComponent.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/TemporaryFolder.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <lua.hpp>

namespace {

using namespace caddis;

// By the thread's own time, so that other work on the machine takes from a budget what it takes from the
// rest.
void spinFor(std::chrono::nanoseconds time)
{
    const auto now = [] {
        timespec stamp {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &stamp);
        return std::chrono::seconds(stamp.tv_sec) + std::chrono::nanoseconds(stamp.tv_nsec);
    };
    const auto end = now() + time;
    while (now() < end) { }
}

struct WarmHelper {
    WarmHelper()
        : task(HelperTask::initWithPath(String::fromLatin1(CADDIS_HELPER_PROGRAM), String(HelperServiceName),
            &OstraImExport, 15, QualityOfService::Default))
        , proxy(*task->proxy())
        , script(folder.write("a.applescript", "on answer(x)\nreturn x\nend answer\n"))
    {
        call();
    }
    void call() const
    {
        proxy.executeFile(script, String(u"answer"),
            ScriptParameter { "utxt"_code, EventDescriptor::withString(String(u"!")).data() });
    }

    PrivateRuntimeDirectory runtime;
    TemporaryFolder folder;
    std::unique_ptr<HelperTask> task;
    HelperProxy proxy;
    String script;
};

void callCached(benchmark::State& state)
{
    const WarmHelper helper;
    for (auto _ : state)
        helper.call();
}

void pingAndBudget(benchmark::State& state)
{
    const WarmHelper helper;
    for (auto _ : state) {
        helper.proxy.ping();
        spinFor(std::chrono::microseconds(100));
    }
}

std::unique_ptr<Script> compiled(const String& source)
{
    auto result = AppleScriptComponent().compile(ScriptText::fromSource(source));
    auto* script = std::get_if<std::unique_ptr<Script>>(&result);
    return script ? std::move(*script) : nullptr;
}

void runScript(benchmark::State& state, std::u16string_view source)
{
    const auto script = compiled(String(source));
    for (auto _ : state) {
        if (!script || script->run({}).error)
            return state.SkipWithError("no result");
    }
}

void runLua(benchmark::State& state, const char* source)
{
    lua_State* lua = luaL_newstate();
    if (luaL_loadstring(lua, source) != LUA_OK)
        return state.SkipWithError("no chunk");
    for (auto _ : state) {
        lua_pushvalue(lua, -1);
        lua_call(lua, 0, 0);
    }
    lua_close(lua);
}

constexpr std::u16string_view EmptyLoop = u"repeat 1000000 times\nend repeat";
constexpr const char* EmptyLuaLoop = "for i = 1, 1000000 do end";
constexpr std::u16string_view CountingLoop = u"on sum()\nset n to 0\nrepeat with i from 1 to 1000000\nset n "
                                             u"to n + i mod 7\nend repeat\nn\nend sum\nsum()";
constexpr const char* CountingLuaLoop
    = "local function sum() local n = 0 for i = 1, 1000000 do n = n + i % 7 end return n end sum()";
constexpr std::u16string_view Calls
    = u"on fib(n)\nif n < 2 then return n\nfib(n - 1) + fib(n - 2)\nend fib\nfib(20)";
constexpr const char* LuaCalls
    = "local function fib(n) if n < 2 then return n end return fib(n - 1) + fib(n - 2) end fib(20)";

// The same script in small and in large.
String sample(std::int64_t copies)
{
    const auto text = ScriptText::fromFile(String::fromLatin1(CADDIS_BENCH_SCRIPT));
    std::u16string source;
    for (std::int64_t copy = 0; copy < copies; ++copy) {
        source.append(u"script s").append(String::fromLatin1(std::to_string(copy)).view());
        source.append(u"\n").append(text->text.view()).append(u"\nend script\n");
    }
    return String(source);
}

void parse(benchmark::State& state)
{
    const String source = sample(state.range(0));
    const auto bytes = static_cast<std::int64_t>(source.utf8().size());
    for (auto _ : state) {
        if (!compiled(source))
            return state.SkipWithError("does not compile");
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}

void parseBudget(benchmark::State& state)
{
    constexpr std::int64_t NanosecondsPerByte = 200;
    const auto bytes = static_cast<std::int64_t>(sample(state.range(0)).utf8().size());
    for (auto _ : state)
        spinFor(std::chrono::nanoseconds(bytes * NanosecondsPerByte));
}

BENCHMARK(callCached)->Name("script/cached-call/caddis")->UseRealTime();
BENCHMARK(pingAndBudget)->Name("script/cached-call/budget:ping-and-100us")->UseRealTime();
BENCHMARK_CAPTURE(runScript, empty, EmptyLoop)->Name("script/empty-loop/caddis");
BENCHMARK_CAPTURE(runLua, empty, EmptyLuaLoop)->Name("script/empty-loop/peer:lua");
BENCHMARK_CAPTURE(runScript, counting, CountingLoop)->Name("script/counting-loop/caddis");
BENCHMARK_CAPTURE(runLua, counting, CountingLuaLoop)->Name("script/counting-loop/peer:lua");
BENCHMARK_CAPTURE(runScript, calls, Calls)->Name("script/recursion/caddis");
BENCHMARK_CAPTURE(runLua, calls, LuaCalls)->Name("script/recursion/peer:lua");
BENCHMARK(parse)->Name("script/parse-sample/caddis")->Arg(1);
BENCHMARK(parseBudget)->Name("script/parse-sample/budget:5MB-a-second")->Arg(1);
BENCHMARK(parse)->Name("script/parse-library/caddis")->Arg(100);
BENCHMARK(parseBudget)->Name("script/parse-library/budget:5MB-a-second")->Arg(100);

} // namespace
