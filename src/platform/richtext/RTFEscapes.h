#pragma once

#include <string>
#include <string_view>

/// Inside this folder: text as RTF has it.
namespace caddis::rtf {

/// Appends `text`: bytes of windows-1252 as \'xx, the rest as \uN after one \uc0 a run; braces and
/// backslashes escaped.
void appendEscaped(std::string& out, std::u16string_view text);

/// Appends "\'xx".
void appendByte(std::string& out, std::size_t byte);

/// Appends "\word12".
void appendWord(std::string& out, std::string_view word, long number);

} // namespace caddis::rtf
