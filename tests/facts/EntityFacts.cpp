#include "facts/Facts.h"
#include "markup/Entities.h"
#include "markup/EntityTable.h"

namespace caddis::facts {

Answer entityFact(const Question& question);

Answer entityFact(const Question& question)
{
    constexpr std::u16string_view Decode = u"decode:";
    constexpr std::u16string_view Encode = u"encode:";
    if (question.key == u"table.count")
        return decimal(entityTable().size());
    if (question.key.view().starts_with(Decode))
        return stringByConvertingEntitiesToCharacters(question.key.substringFrom(Decode.size()));
    if (question.key.view().starts_with(Encode))
        return stringByConvertingCharactersToEntities(question.key.substringFrom(Encode.size()));
    return Answer::skip("no such key");
}

} // namespace caddis::facts
