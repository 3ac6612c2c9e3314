// The AppleScript lexer, parser and evaluator.
//
// Invariants: any text compiles or fails with a number and a message; it runs to an end or a failure within
// its steps, its memory and the stack; a failure gives no result.

#include "Fuzz.h"
#include "platform/base/Log.h"
#include "platform/script/applescript/AppleScriptComponent.h"

#include <algorithm>

using namespace caddis;

namespace {

// Commands that reach outside of the process, or wait, are not to be tried with such texts.
constexpr std::u16string_view Outside[] = { u"shell", u"delay", u"move", u"delete", u"duplicate", u"make",
    u"write", u"access", u"eof", u"load", u"read", u"name", u"info" };

bool reachesOutside(const String& source)
{
    return std::ranges::any_of(Outside,
        [&](std::u16string_view word) { return source.view().find(word) != std::u16string_view::npos; });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setLogSink([](const String&) {});
    const String source = decodeScript({ reinterpret_cast<const char*>(data), size });
    if (reachesOutside(source))
        return 0;
    auto compiled = AppleScriptComponent().compile(ScriptText::fromSource(source));
    if (const auto* error = std::get_if<ScriptErrorInfo>(&compiled)) {
        INVARIANT(error->number != 0 && !error->message.isEmpty());
        return 0;
    }
    const ScriptLimits limits { .deadline = std::chrono::seconds(2), .memory = 16 << 20, .steps = 20'000 };
    const ScriptReply reply = std::get<std::unique_ptr<Script>>(compiled)->run(limits);
    INVARIANT(!reply.error || reply.result.isNull());
    return 0;
}
