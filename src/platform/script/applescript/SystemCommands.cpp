#include "platform/base/MutableString.h"
#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/DateText.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/FolderPaths.h"
#include "platform/task/ChildProcess.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <pwd.h>
#include <sys/utsname.h>
#include <thread>
#include <unistd.h>

namespace caddis::applescript {

namespace {

Datum now(CommandCall&) { return make<DateObject>(currentDate()); }

// Line ends as the platform's texts have them, and without the last one.
String shellOutput(std::string bytes, bool altersLineEndings)
{
    if (altersLineEndings) {
        if (bytes.ends_with('\n'))
            bytes.pop_back();
        std::ranges::replace(bytes, '\n', '\r');
    }
    return String::fromUtf8(bytes);
}

[[noreturn]] void failShell(const ChildResult& result)
{
    Failure failure;
    failure.number = result.status;
    std::string message = result.errorOutput.empty() ? result.output : result.errorOutput;
    failure.message = shellOutput(std::move(message), true);
    if (failure.message.isEmpty())
        failure.message = String(u"The command exited with a non-zero status.");
    throw Failure(failure);
}

[[noreturn]] void failStopped(const ChildResult& result)
{
    if (result.outcome == ChildResult::Outcome::TooMuchOutput)
        fail(ScriptErrorNumber::OutOfMemory, String(u"The command wrote too much."));
    if (result.outcome == ChildResult::Outcome::NotStarted)
        fail(ScriptErrorNumber::ComponentError, String(u"The command could not be started."));
    if (result.outcome == ChildResult::Outcome::Signalled) {
        Failure failure;
        failure.number = 128 + result.status;
        failure.message = String(u"The command was ended by a signal.");
        throw Failure(failure);
    }
    Failure failure;
    failure.number = static_cast<int>(ScriptErrorNumber::TimedOut);
    failure.message = String(u"The script timed out.");
    failure.endsScript = true;
    throw Failure(failure);
}

Datum shellScript(CommandCall& call)
{
    if (call.flag("administrator privileges", false))
        fail(ScriptErrorNumber::NoUserInteraction, String(u"No user interaction allowed."));
    ChildCommand command;
    command.arguments = { "/bin/sh", "-c", call.directText().utf8() };
    command.deadline = call.interpreter.timeLeft();
    const ChildResult result = runChild(command);
    if (result.outcome != ChildResult::Outcome::Exited)
        failStopped(result);
    if (result.status != 0)
        failShell(result);
    const Datum text = Datum::text(shellOutput(result.output, call.flag("altering line endings", true)));
    const Datum& type = call.argument("as");
    return type.is(Kind::Class) ? coerce(call.interpreter, text, type.asSymbol()) : text;
}

// Waits no longer than the script may still run.
Datum delay(CommandCall& call)
{
    using std::chrono::milliseconds;
    const double seconds = call.direct.isSet() ? requireNumber(call.interpreter, call.direct).asReal() : 0;
    const auto wanted = milliseconds(static_cast<std::int64_t>(std::clamp(seconds, 0.0, 1e9) * 1000));
    std::this_thread::sleep_for(std::min(wanted, call.interpreter.timeLeft()));
    return {};
}

Datum pathTo(CommandCall& call)
{
    const Datum value = call.requireDirect();
    const Datum& domain = call.argument("from");
    const Symbol folder = value.is(Kind::Constant) ? value.asSymbol() : Symbol::None;
    std::optional<String> path;
    if (value.is(Kind::Script))
        path = call.interpreter.scriptPath.isEmpty() ? std::nullopt
                                                     : std::optional(call.interpreter.scriptPath);
    else
        path = folderPath(folder, domain.is(Kind::Constant) ? domain.asSymbol() : Symbol::UserDomain);
    if (!path)
        fail(ScriptErrorNumber::FileNotFound, String(u"The folder wasn’t found."));
    const Datum file = make<FileObject>(Symbol::Alias, *path);
    const Datum& type = call.argument("as");
    return type.is(Kind::Class) ? coerce(call.interpreter, file, type.asSymbol()) : file;
}

Datum systemAttribute(CommandCall& call)
{
    if (!call.direct.isSet()) {
        Datum names = make<List>();
        for (char** entry = environ; *entry; ++entry) {
            const std::string_view text(*entry);
            names.as<List>().append(Datum::text(String::fromUtf8(text.substr(0, text.find('=')))));
        }
        return names;
    }
    const char* value = std::getenv(call.directText().utf8().c_str());
    return Datum::text(String::fromUtf8(value ? value : ""));
}

Datum textFromBytes(const char* bytes) { return Datum::text(String::fromUtf8(bytes ? bytes : "")); }

Datum systemInfo(CommandCall&)
{
    utsname system {};
    uname(&system);
    const passwd* user = getpwuid(getuid());
    Datum made = make<Record>();
    auto& record = made.as<Record>();
    record.set(Symbol::AppleScriptVersion, Datum::text(u"2.8"));
    record.set(Symbol::SystemVersion, textFromBytes(system.release));
    record.set(Symbol::ShortUserName, textFromBytes(user ? user->pw_name : nullptr));
    record.set(Symbol::LongUserName, textFromBytes(user ? user->pw_gecos : nullptr));
    record.set(Symbol::UserId, Datum::number(getuid()));
    record.set(Symbol::UserLocale, Datum::text(u"en_US"));
    record.set(Symbol::HomeDirectory,
        make<FileObject>(
            Symbol::Alias, folderPath(Symbol::HomeFolder, Symbol::UserDomain).value_or(String())));
    record.set(Symbol::ComputerName, textFromBytes(system.nodename));
    record.set(Symbol::HostName, textFromBytes(system.nodename));
    record.set(Symbol::CpuType, textFromBytes(system.machine));
    const double megabytes
        = static_cast<double>(sysconf(_SC_PHYS_PAGES)) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576;
    record.set(Symbol::PhysicalMemory, Datum::number(static_cast<std::int64_t>(megabytes)));
    return made;
}

Datum theClipboard(CommandCall&) { return Datum::text(languageState().clipboard); }

Datum setTheClipboard(CommandCall& call)
{
    languageState().clipboard = requireText(call.interpreter, call.argument("to"));
    return {};
}

Datum timeToGmt(CommandCall&)
{
    const std::time_t instant = std::time(nullptr);
    std::tm local {};
    localtime_r(&instant, &local);
    return Datum::number(local.tm_gmtoff);
}

constexpr CommandParameter shellParameters[] = { { "as" }, { "administrator privileges", true },
    { "altering line endings", true }, { "user name" }, { "password" } };
constexpr CommandParameter pathParameters[] = { { "from" }, { "as" }, { "folder creation", true } };
constexpr CommandParameter attributeParameters[] = { { "has" } };
constexpr CommandParameter clipboardParameters[] = { { "to" } };

constexpr CommandSpec commands[] = {
    { .name = "current date", .perform = now, .parameters = {}, .bindsTightly = true },
    { .name = "do shell script", .perform = shellScript, .parameters = shellParameters },
    { .name = "delay", .perform = delay, .parameters = {}, .needsDirect = true },
    { .name = "path to", .perform = pathTo, .parameters = pathParameters, .bindsTightly = true },
    { .name = "system attribute", .perform = systemAttribute, .parameters = attributeParameters },
    { .name = "system info", .perform = systemInfo, .parameters = {}, .bindsTightly = true },
    { .name = "clipboard", .perform = theClipboard, .parameters = {}, .bindsTightly = true },
    { .name = "set clipboard", .perform = setTheClipboard, .parameters = clipboardParameters },
    { .name = "time to GMT", .perform = timeToGmt, .parameters = {}, .bindsTightly = true },
};

} // namespace

std::span<const CommandSpec> systemCommands() { return commands; }

} // namespace caddis::applescript
