#pragma once

#include "platform/base/String.h"
#include "platform/script/FourCharCode.h"

namespace caddis::applescript {

/// The number of a name. The language's own words and phrases (Terms.def) have constants; all other names get
/// theirs when they are first seen, on the current heap, and keep it for the life of that heap: a symbol
/// means nothing to another script.
///
/// Plain names fold to lower case; names between bars keep it, and stay apart from the language's words:
/// `name` is a term, `|name|` a label of the user's own.
enum class Symbol : std::uint32_t {
#define TERM(symbol, spelling, code, kinds) symbol,
#include "platform/script/applescript/Terms.def"
#undef TERM
    FirstUserSymbol,
};

/// What a term can be; several may hold.
enum TermKind : unsigned {
    ReservedWord = 1,
    ClassName = 2,
    ElementClass = 4,
    PropertyName = 8,
    ConstantName = 16,
    FileApplicationProperty = 32,
};

/// A name as it is written without bars.
Symbol symbolOfPlainName(std::u16string_view name);
/// A name between bars, or a label that an application sent.
Symbol symbolOfUserName(std::u16string_view name);
/// A word of the vocabulary that all scripts share (commands, parameters, phrases). For tables that are built
/// before the first script runs, and for them alone.
Symbol symbolOfSharedWord(std::u16string_view word);
/// Nothing when the script has not used the name.
std::optional<Symbol> existingSymbol(std::u16string_view lowerCaseName);

/// The name as a source writes it: in its first spelling, with bars where it needs them.
String sourceName(Symbol symbol);
/// The name without bars.
String plainName(Symbol symbol);

unsigned kindsOf(Symbol symbol);
/// 0 for a name that is not a term.
FourCharCode codeOf(Symbol symbol);
/// Symbol::None when no term has the code.
Symbol termWithCode(FourCharCode code);

/// The class that a class name stands for: string and Unicode text are text.
Symbol canonicalClass(Symbol name);

} // namespace caddis::applescript
