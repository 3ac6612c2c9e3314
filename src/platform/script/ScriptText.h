#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <optional>

namespace caddis {

/// What stands in a script file, or a source that a caller sent.
struct ScriptText {
    String path; ///< of the file, or empty
    Data bytes; ///< the file as it is; for a script bundle, its main script
    String text; ///< the bytes decoded; empty for a compiled script

    /// Whether the bytes are a compiled script, for which there is no source text.
    bool isCompiled() const;

    static ScriptText fromSource(const String& source);
    /// A plain file, or a bundle whose script is Contents/Resources/Scripts/main.scpt. Nil when it cannot be
    /// read or has more than 64 MiB.
    static std::optional<ScriptText> fromFile(const String& path);
};

/// Text of a script file: UTF-16 with or without its mark, UTF-8 with or without its mark, else MacRoman.
String decodeScript(std::string_view bytes);

} // namespace caddis
