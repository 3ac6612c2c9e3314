#include "facts/Facts.h"

#include "platform/dates/TimeZone.h"
#include "text/DateReader.h"

#include <cstdio>

namespace caddis::facts {

Answer dateFact(const Question& question);

// date:TEXT, read in UTC where the text has no zone.
Answer dateFact(const Question& question)
{
    constexpr std::u16string_view Prefix = u"date:";
    if (!question.key.view().starts_with(Prefix))
        return Answer::skip("unknown key");
    TimeZone::setDefaultZone(TimeZone());
    const auto result = date(question.key.substringFrom(Prefix.size()));
    if (!result)
        return std::nullopt;
    const CivilTime civil = TimeZone().civilTime(*result);
    char text[80];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", civil.year, civil.month, civil.day,
        civil.hour, civil.minute, civil.second);
    return String::fromLatin1(text);
}

} // namespace caddis::facts
