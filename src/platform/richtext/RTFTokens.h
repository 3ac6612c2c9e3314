#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Inside this folder: RTF cut into its tokens (RTF 1.9.1, "Conventions of an RTF Reader").
namespace caddis::rtf {

struct Token {
    enum class Kind {
        End,
        Open, ///< {
        Close, ///< }
        Text, ///< bytes of the document's code page; neither braces, backslashes nor line ends among them
        Byte, ///< \'xx
        Word, ///< \word, \word12, \word-12
        Symbol, ///< a backslash and what is no letter
    };

    Kind kind = Kind::End;
    std::string_view text; ///< of Text and Word
    char character = 0; ///< of Byte and Symbol
    std::optional<std::int32_t> number; ///< of Word; held to 32 bits
    bool isAscii = false; ///< of Text
};

class Tokens {
public:
    explicit Tokens(std::string_view bytes)
        : m_rest(bytes)
    {
    }

    Token next();
    /// What \binN is followed by: at most the rest.
    void skip(std::size_t count) { m_rest.remove_prefix(count < m_rest.size() ? count : m_rest.size()); }

private:
    Token text();
    Token control();
    Token word();
    std::optional<std::int32_t> number();

    std::string_view m_rest;
};

} // namespace caddis::rtf
