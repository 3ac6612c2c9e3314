#include "service/ScriptCache.h"

#include "platform/base/Exception.h"
#include "platform/base/Log.h"
#include "platform/files/HFSType.h"
#include "platform/script/applescript/AppleScriptComponent.h"
#include "text/CharacterTables.h"

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <unistd.h>

namespace caddis {
inline namespace OstraAppleScriptExtensions {

namespace {

constexpr std::u16string_view ClassName = u"NSAppleScript";
constexpr std::size_t HFSTypes = 3; // The first of the script types; the last two are templates.
constexpr std::size_t TemplateTypes = 2;

using CachedScript = std::shared_ptr<Script>;

struct Cache {
    std::mutex mutex;
    bool isUsed = false;
    std::map<String, CachedScript> scripts;
};

Cache& cache()
{
    static Cache theCache;
    return theCache;
}

CachedScript cachedScript(const String& key)
{
    const std::lock_guard lock(cache().mutex);
    const auto found = cache().scripts.find(key);
    return found != cache().scripts.end() ? found->second : nullptr;
}

void cacheScript(const String& key, const CachedScript& script)
{
    const std::lock_guard lock(cache().mutex);
    if (cache().isUsed)
        cache().scripts[key] = script;
}

String lowerCase(const String& text)
{
    MutableString lower(text.length());
    for (const char16_t unit : text)
        lower.append(toLower(unit));
    return std::move(lower).take();
}

String pathExtension(const String& path)
{
    const std::u16string_view name = path.view().substr(path.view().find_last_of(u'/') + 1);
    const std::size_t dot = name.rfind(u'.');
    return dot == std::u16string_view::npos || dot == 0 ? String() : String(name.substr(dot + 1));
}

// Compiles, logs what does not compile, and keeps what does.
CachedScript compiledScript(const String& key, const std::optional<ScriptText>& text, bool keeps)
{
    ScriptErrorInfo error;
    error.number = static_cast<int>(ScriptErrorNumber::FileNotFound);
    error.message = String(u"The script could not be loaded.");
    if (text) {
        CompiledScript result = compileScript(*text);
        if (auto* script = std::get_if<std::unique_ptr<Script>>(&result)) {
            CachedScript made(std::move(*script));
            if (keeps)
                cacheScript(key, made);
            return made;
        }
        error = std::get<ScriptErrorInfo>(result);
    }
    log(u"Invalid script: %@\n%@", key, error.description());
    return nullptr;
}

CachedScript scriptOfFile(const String& path)
{
    if (auto known = cachedScript(path))
        return known;
    return compiledScript(path, ScriptText::fromFile(path), true);
}

CachedScript scriptOfSource(const String& source, bool isStatic)
{
    if (auto known = isStatic ? cachedScript(source) : nullptr)
        return known;
    return compiledScript(source, ScriptText::fromSource(source), isStatic);
}

std::optional<EventDescriptor> call(
    const CachedScript& script, const String& function, const Parameters& params)
{
    if (!script)
        return std::nullopt;
    ScriptReply reply = executeFunction(*script, function, params);
    if (!reply.error)
        return std::move(reply.result);
    log(u"on %@: %@", function, reply.error->description());
    return std::nullopt;
}

std::optional<EventDescriptor> runWhole(const CachedScript& script)
{
    if (!script)
        return std::nullopt;
    ScriptReply reply = script->run(ScriptLimits::fromEnvironment());
    if (reply.error)
        return std::nullopt;
    return std::move(reply.result);
}

} // namespace

const std::vector<String>& AppleScriptTypes()
{
    static const std::vector<String> types { u"'scpt'"_s, u"'osas'"_s, u"'APPL'"_s, u"scpt"_s, u"scptd"_s,
        u"applescript"_s, u"templatescript"_s, u"templatescriptd"_s };
    return types;
}

bool isAppleScriptExtension(const String& extension, const String& type)
{
    const auto& types = AppleScriptTypes();
    const auto extensions = types.begin() + HFSTypes;
    return std::find(extensions, types.end(), lowerCase(extension)) != types.end()
        || std::find(types.begin(), extensions, type) != extensions;
}

bool isAppleScriptFile(const String& path)
{
    return isAppleScriptExtension(pathExtension(path), HFSTypeOfFile(path));
}

bool isTemplateScriptExtension(const String& extension)
{
    const auto& types = AppleScriptTypes();
    return std::find(types.end() - TemplateTypes, types.end(), lowerCase(extension)) != types.end();
}

std::optional<String> sourceAtPath(const String& path)
{
    if (!isAppleScriptFile(path))
        return std::nullopt;
    const auto text = ScriptText::fromFile(path);
    return text && !text->isCompiled() ? std::optional(text->text) : std::nullopt;
}

void setUseCachingForStaticScripts(bool use)
{
    constexpr std::u16string_view Method = u"setUseCachingForStaticScripts:";
    if (gettid() != getpid()) {
        log(u"WARNING: %@ should be called from main thread.", Method);
        log(u"%@", Exception(String(), String()).callStackSymbols());
    }
    const std::lock_guard lock(cache().mutex);
    cache().isUsed = use;
    if (!use)
        cache().scripts.clear();
}

bool usesCachingForStaticScripts()
{
    const std::lock_guard lock(cache().mutex);
    return cache().isUsed;
}

void clearCacheForStaticScripts()
{
    const std::lock_guard lock(cache().mutex);
    cache().scripts.clear();
}

bool compileAndCacheSource(const String& source)
{
    return guarded(
        u"compileAndCacheSource:", ClassName, [&] { return scriptOfSource(source, true) != nullptr; });
}

std::optional<EventDescriptor> compileAndExecuteSource(const String& source, bool isStatic)
{
    return guarded(u"compileAndExecuteSource:isStatic:", ClassName, [&]() -> std::optional<EventDescriptor> {
        return source.isEmpty() ? std::nullopt : runWhole(scriptOfSource(source, isStatic));
    });
}

std::optional<EventDescriptor> compileAndExecuteFile(const String& path)
{
    return guarded(u"compileAndExecuteFile:", ClassName, [&]() -> std::optional<EventDescriptor> {
        return path.isEmpty() ? std::nullopt : runWhole(scriptOfFile(path));
    });
}

std::optional<EventDescriptor> compileAndExecuteSource(
    const String& source, bool isStatic, const String& function, const Parameters& params)
{
    return guarded(u"compileAndExecuteSource:isStatic:function:params:", ClassName,
        [&]() -> std::optional<EventDescriptor> {
            if (source.isEmpty() || function.isEmpty())
                return std::nullopt;
            return call(scriptOfSource(source, isStatic), function, params);
        });
}

std::optional<EventDescriptor> compileAndExecuteFile(
    const String& path, const String& function, const Parameters& params)
{
    return guarded(
        u"compileAndExecuteFile:function:params:", ClassName, [&]() -> std::optional<EventDescriptor> {
            if (path.isEmpty() || function.isEmpty())
                return std::nullopt;
            return call(scriptOfFile(path), function, params);
        });
}

AppleEvent handlerCall(const String& function, const Parameters& params)
{
    constexpr std::array<std::uint32_t, 2> CurrentProcess { 0, 2 }; // High and low word of its serial number.
    AppleEvent event;
    event.eventClass = "ascr"_code;
    event.eventID = "psbr"_code;
    event.target = { "kpid"_code,
        Data::copyOf({ reinterpret_cast<const char*>(CurrentProcess.data()), sizeof CurrentProcess }) };
    event.parameters = { { "snam"_code, EventDescriptor::withString(lowerCase(function)) },
        { "----"_code, EventDescriptor::list(params) } };
    return event;
}

ScriptReply executeFunction(Script& script, const String& function, const Parameters& params)
{
    if (function.isEmpty())
        return {};
    return script.send(handlerCall(function, params), ScriptLimits::fromEnvironment());
}

} // namespace OstraAppleScriptExtensions
} // namespace caddis
