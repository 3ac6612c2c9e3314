// caddis-facts: reads one JSON object a line, {"id", "kind", "path", "key"}, asks the library in this
// process, and answers {"id", "value"}: a string, null for nil, or {"skip": reason}.

#include "facts/Facts.h"
#include "facts/JSONLine.h"

#include <iostream>

namespace caddis::facts {

Answer appleScriptFact(const Question&);
Answer dateFact(const Question&);
Answer encodingFact(const Question&);
Answer entityFact(const Question&);
Answer epubFact(const Question&);
Answer feedFact(const Question&);
Answer documentFact(const Question&);
Answer htmlFact(const Question&);
Answer importerFact(const Question&);
Answer imageFact(const Question&);
Answer jsonFact(const Question&);
Answer pdfFact(const Question&);
Answer mimeFact(const Question&);
Answer movieFact(const Question&);
Answer richTextFact(const Question&);
Answer textBundleFact(const Question&);
Answer unicodeFact(const Question&);
Answer webArchiveFact(const Question&);
Answer zipFact(const Question&);

namespace {

using Answerer = Answer (*)(const Question&);

// One row per kind of file.
const std::map<std::u16string_view, Answerer> kinds {
    { u"applescript", appleScriptFact },
    { u"chatlog", documentFact },
    { u"dates", dateFact },
    { u"importers", importerFact },
    { u"outline", documentFact },
    { u"entities", entityFact },
    { u"html-encodings", encodingFact },
    { u"epub", epubFact },
    { u"feeds", feedFact },
    { u"html", htmlFact },
    { u"images", imageFact },
    { u"json", jsonFact },
    { u"pdf", pdfFact },
    { u"mime", mimeFact },
    { u"movies", movieFact },
    { u"rtf", richTextFact },
    { u"rtfd", richTextFact },
    { u"textbundle", textBundleFact },
    { u"unicode", unicodeFact },
    { u"webarchive", webArchiveFact },
    { u"zip", zipFact },
};

Answer answer(std::u16string_view kind, const Question& question)
{
    const auto found = kinds.find(kind);
    return found == kinds.end() ? Answer::skip("no such kind yet") : found->second(question);
}

std::string encoded(const Answer& answer)
{
    if (answer.skipReason())
        return R"({"skip": )" + quoted(String::fromUtf8(*answer.skipReason())) + "}";
    return answer.value() ? quoted(*answer.value()) : "null";
}

std::string respond(const std::string& line)
{
    auto request = readObject(String::fromUtf8(line));
    if (!request)
        return R"({"error": "not a flat object of strings"})";
    const auto member = [&](std::u16string_view key) { return (*request)[String(key)]; };
    const Answer value = answer(member(u"kind"), { member(u"path"), member(u"key") });
    return R"({"id": )" + quoted(member(u"id")) + R"(, "value": )" + encoded(value) + "}";
}

} // namespace
} // namespace caddis::facts

int main()
{
    for (std::string line; std::getline(std::cin, line);)
        std::cout << caddis::facts::respond(line) << std::endl;
}
