#pragma once

#include "platform/base/Format.h"

#include <functional>

/// The process's log: one line on standard error, "name[pid] text", written in one call.
namespace caddis {

/// Logs one text as it stands.
void logText(const String& text);

/// log(u"Couldn't register service %@", name): a checked pattern and its arguments.
template <typename... Arguments>
void log(FormatPattern<std::type_identity_t<Arguments>...> pattern, const Arguments&... arguments)
{
    logText(format<Arguments...>(pattern, arguments...));
}

/// Receives every logged text in place of standard error.
using LogSink = std::function<void(const String&)>;

/// Sets the sink for the whole process and returns the previous one; an empty sink restores standard error.
/// The sink may be called from any thread, one call at a time, and must not log.
LogSink setLogSink(LogSink sink);

} // namespace caddis
