#include "facts/Facts.h"
#include "markup/JSONEscapes.h"

namespace caddis::facts {

Answer jsonFact(const Question& question);

// decode:LITERAL, encode:TEXT.
Answer jsonFact(const Question& question)
{
    constexpr std::u16string_view Decode = u"decode:";
    constexpr std::u16string_view Encode = u"encode:";
    if (question.key.view().starts_with(Decode))
        return stringByConvertingJSONToCharacters(question.key.substringFrom(Decode.size()));
    if (question.key.view().starts_with(Encode))
        return stringByConvertingCharactersToJSON(question.key.substringFrom(Encode.size()));
    return Answer::skip("no such key");
}

} // namespace caddis::facts
