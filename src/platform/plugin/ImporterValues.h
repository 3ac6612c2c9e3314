#pragma once

#include "platform/base/FunctionRef.h"
#include "platform/base/Value.h"
#include "platform/plugin/caddis_importer.h"

/// The host's side of caddis_importer.h: the values that a plug-in fills in.
namespace caddis {

/// Bytes of text (UTF-8) that one import may append, and of everything else that it may set.
inline constexpr std::size_t TextBudget = 16 << 20;
inline constexpr std::size_t AttributeBudget = 64 << 20;
/// Seconds after which should_stop says so; below the 15 that a client waits.
inline constexpr double ImportSeconds = 10;

/// The functions that every plug-in gets. Outside an import they do nothing.
const CaddisHost& importerHost();

/// Runs one import with an empty dictionary and gives what stands in it afterwards. Null objects stay.
/// Imports do not nest.
Dictionary attributesOfImport(FunctionRef<void(CaddisValue* attributes)> import);

/// Calls into a plug-in; false, and logged with its path, when an exception came out of it. Does not return
/// in a process that the plug-in has forked.
bool withoutExceptions(const String& path, FunctionRef<void()> call);

} // namespace caddis
