#pragma once

#include "platform/script/ScriptingComponent.h"

/// Compiling, keeping and calling scripts. Failures are results (nil) and logs, never exceptions.
namespace caddis {
inline namespace OstraAppleScriptExtensions {

/// The HFS types, each in single quotes, then the extensions.
const std::vector<String>& AppleScriptTypes();
/// An extension in any case, or an HFS type with its quotes in exact case.
bool isAppleScriptExtension(const String& extension, const String& type);
bool isAppleScriptFile(const String& path);
bool isTemplateScriptExtension(const String& extension);
/// Nil unless the path is a script file whose source can be had.
std::optional<String> sourceAtPath(const String& path);

/// Compiled scripts are kept by their file's path, or by their source's text, while caching is on. Safe from
/// any thread; a change of the switch off the main thread is logged.
void setUseCachingForStaticScripts(bool use);
bool usesCachingForStaticScripts();
void clearCacheForStaticScripts();

using Parameters = std::vector<EventDescriptor>;

/// Compiles a source and keeps it; false, and a log, when it does not compile.
bool compileAndCacheSource(const String& source);
/// Run the script as a whole; nil on failure.
std::optional<EventDescriptor> compileAndExecuteSource(const String& source, bool isStatic);
std::optional<EventDescriptor> compileAndExecuteFile(const String& path);
/// Run one handler; nil on failure, and for an empty source, path or name. The handler's name is sent in
/// lower case.
std::optional<EventDescriptor> compileAndExecuteSource(
    const String& source, bool isStatic, const String& function, const Parameters& params);
std::optional<EventDescriptor> compileAndExecuteFile(
    const String& path, const String& function, const Parameters& params);

/// The event that calls a handler.
AppleEvent handlerCall(const String& function, const Parameters& params);
/// Nothing at all for an empty name.
ScriptReply executeFunction(Script& script, const String& function, const Parameters& params);

} // namespace OstraAppleScriptExtensions
} // namespace caddis
