#include "facts/Facts.h"

#include "platform/dates/DateFormatter.h"
#include "platform/dates/TimeZone.h"
#include "text/DateReader.h"

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
    return DateFormatter(u"yyyy-MM-dd'T'HH:mm:ss'Z'").stringFromDate(*result);
}

} // namespace caddis::facts
