#include "facts/Facts.h"
#include "markup/TextBundle.h"
#include "support/Sha1.h"

namespace caddis::facts {

Answer textBundleFact(const Question& question);

// "text"; "text.sha1", of its UTF-8.
Answer textBundleFact(const Question& question)
{
    if (question.key != u"text" && question.key != u"text.sha1")
        return Answer::skip("no such key");
    const auto bundle = stringWithContentsOfTextBundleFile(question.path, NSStringEncoding::UTF8);
    if (!bundle)
        return std::nullopt;
    return question.key == u"text" ? bundle->text : String::fromLatin1(sha1(bundle->text.utf8()));
}

} // namespace caddis::facts
