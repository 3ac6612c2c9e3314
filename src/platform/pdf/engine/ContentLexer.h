#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace caddis::pdf {

/// One operand of a content stream; arrays and dictionaries are flat, between their brackets.
struct Operand {
    enum class Kind : std::uint8_t { Number, String, Name, ArrayBegin, ArrayEnd, DictBegin, DictEnd, Other };

    Kind kind = Kind::Other;
    double number = 0;
    std::string_view bytes; ///< a string decoded, a name without its slash; "true", "null" of Other
};

/// Cuts a content stream (ISO 32000-1, 7.8.2) into operators with their operands.
///
/// Nothing is malformed: what can't be an operand or an operator is passed over, a string without its end
/// goes to the end. Strings and names are decoded in place, over their own source, so nothing is allocated
/// for them.
class ContentLexer {
public:
    /// The lexer works on `content` itself.
    explicit ContentLexer(std::string content);

    /// Reads on to the next operator; false at the end. Operands beyond a million are dropped.
    bool next();

    std::string_view op() const { return m_operator; }
    std::span<const Operand> operands() const { return m_operands; }

    /// Behind the operator BI: skips to behind the image's EI.
    void skipInlineImage();

private:
    void add(Operand::Kind kind, double number = 0, std::string_view bytes = {});
    void skipComment();
    void readWord();
    void readNumber();
    void readName();
    void readLiteralString();
    void readHexString();
    char* readEscape(char* out);
    void readAngle(char first);

    std::string m_content;
    char* m_at;
    char* m_end;
    std::vector<Operand> m_operands;
    std::string_view m_operator;
};

} // namespace caddis::pdf
