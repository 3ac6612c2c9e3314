#include "facts/Facts.h"

#include "foundation/MIMETypes.h"

namespace caddis::facts {

Answer mimeFact(const Question& question)
{
    constexpr std::u16string_view Key = u"MIMETypeForExtension:";
    if (question.key.view().starts_with(Key))
        return MIMETypeForExtension(question.key.substringFrom(Key.size()));
    return Answer::skip("no such key");
}

} // namespace caddis::facts
