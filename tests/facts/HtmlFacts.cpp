#include "facts/Facts.h"

#include "markup/Html2Text.h"
#include "platform/base/MutableString.h"
#include "platform/files/FileSystem.h"
#include "text/CharacterTables.h"

namespace caddis::facts {

Answer htmlFact(const Question& question);
Answer htmlHeadFact(const Question& question);

namespace {

// The runs of letters, numbers and underscores, one space apart.
String words(const String& text)
{
    MutableString result;
    bool between = false;
    for (const char16_t unit : text) {
        const bool inWord = alphaNumCharacterSetRep().contains(unit) || unit == u'_';
        if (inWord && between && !result.isEmpty())
            result.append(u' ');
        if (inWord)
            result.append(unit);
        between = !inWord;
    }
    return std::move(result).take();
}

} // namespace

Answer htmlFact(const Question& question)
{
    if (question.key != u"text" && question.key != u"text.words")
        return htmlHeadFact(question);
    const auto data = FileSystem::contentsOfFile(question.path);
    if (!data)
        return Answer::skip("no such file");
    const String html = String::fromUtf8(data->chars());
    const String text = stringByConvertingHtml2PlainTextNonUmlauted(html, false, { .onlyBody = true }).text;
    return question.key == u"text" ? text : words(text);
}

} // namespace caddis::facts
