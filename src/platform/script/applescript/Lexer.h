#pragma once

#include "platform/base/Range.h"
#include "platform/script/applescript/Datum.h"

#include <vector>

namespace caddis::applescript {

enum class TokenType : std::uint8_t {
    Word, ///< a plain name or a word of the language: `symbol`
    BarredName, ///< |any text|: `symbol`
    Integer, ///< `number`, which is whole and fits an integer
    Real, ///< `number`
    Ordinal, ///< 1st, 2nd: `number`
    String, ///< `text`
    Raw, ///< «class utf8»: `text` is what stands between the marks
    LeftParenthesis,
    RightParenthesis,
    LeftBrace,
    RightBrace,
    Comma,
    Colon,
    Possessive, ///< 's
    Plus,
    Minus,
    Times,
    Divide,
    Power,
    Ampersand,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    EndOfLine,
    EndOfText,
};

struct Token {
    TokenType type = TokenType::EndOfText;
    Symbol symbol = Symbol::None;
    bool spaceBefore = false;
    Range range; ///< in units of the source
    double number = 0;
    String text;

    bool is(TokenType wanted) const { return type == wanted; }
    bool is(Symbol word) const { return type == TokenType::Word && symbol == word; }
};

/// Cuts a source into tokens, the last of which is EndOfText; comments and continued line ends are gone.
/// Fails with -2741 at a character or literal that cannot be read.
std::vector<Token> tokensOf(const String& source);

} // namespace caddis::applescript
