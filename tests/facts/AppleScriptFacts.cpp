#include "facts/Facts.h"

#include "platform/base/Log.h"
#include "platform/script/LongDateTime.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/SourceText.h"

#include <algorithm>
#include <filesystem>
#include <vector>

namespace caddis::facts {

namespace {

using namespace applescript;
namespace fs = std::filesystem;

// A Markdown file's first code fence.
std::string fencedCode(const std::string& text)
{
    constexpr std::string_view Fence = "```";
    const std::size_t open = text.find(Fence);
    const std::size_t start = open == std::string::npos ? open : text.find_first_of("\r\n", open);
    if (start == std::string::npos)
        return {};
    return text.substr(start, text.rfind(Fence) - start) + "\n";
}

// A script file, or all Markdown files of a folder joined.
String sourceAt(const String& path)
{
    const std::size_t note = path.view().find(u" (");
    const String place = note == std::u16string_view::npos ? path : path.substringTo(note);
    if (!fs::is_directory(place.utf8())) {
        const auto script = ScriptText::fromFile(place);
        return script ? script->text : String();
    }
    std::vector<fs::path> files(fs::directory_iterator(place.utf8()), fs::directory_iterator {});
    std::ranges::sort(files);
    std::string joined;
    for (const fs::path& file : files) {
        if (const auto script = ScriptText::fromFile(String::fromUtf8(file.string())))
            joined += fencedCode(script->text.utf8());
    }
    return String::fromUtf8(joined);
}

// "foldl of plus over {1,2,3}" is said in words: the handler with an addition, from 0 on.
std::string expressionFrom(const std::string& key)
{
    constexpr std::string_view Words = " of plus over ";
    const std::size_t words = key.find(Words);
    return words == std::string::npos
        ? key
        : key.substr(0, words) + "(plus, 0, " + key.substr(words + Words.size()) + ")";
}

// Dates in the form of the facts; everything else as a source writes it.
String shown(const Datum& value)
{
    const auto* date = value.get<DateObject>();
    const auto fields = date ? calendarFields(date->seconds) : std::nullopt;
    if (!fields)
        return sourceText(value);
    char text[64];
    std::strftime(text, sizeof text, "date %Y-%m-%d %H:%M:%S", &*fields);
    return String::fromUtf8(text);
}

String outcome(const String& source, bool runsWhole)
{
    Interpreter interpreter;
    const Interpreter::Call call(interpreter, {});
    try {
        auto program = parseScript(source, interpreter.applications());
        const ScriptCode& code = program->script;
        const Datum made = instantiate(interpreter, std::move(program), code, nullptr);
        auto& script = made.as<ScriptObject>();
        if (runsWhole) {
            interpreter.run(script);
            return String(u"no error");
        }
        return shown(interpreter.call(findHandler(script, symbolOfPlainName(u"factanswer")), script, {}));
    } catch (const Failure& failure) {
        return format(u"error %d: %@", failure.number, failure.message);
    }
}

} // namespace

// call:EXPRESSION, evaluated by a handler of the script; "(run the whole script)" runs it.
Answer appleScriptFact(const Question& question)
{
    setLogSink([](const String&) {});
    const std::string key = question.key.utf8();
    if (!key.starts_with("call:"))
        return Answer::skip("no such key");
    const std::string expression = expressionFrom(key.substr(5));
    const String source = sourceAt(question.path);
    if (expression == "(run the whole script)")
        return outcome(source, true);
    const String answer = outcome(format(u"%@\non factAnswer()\nreturn %s\nend factAnswer\n"
                                         "on plus(a, b)\na + b\nend plus\n",
                                      source, expression),
        false);
    // Classes of another language's frameworks, which scripts reach through the application that runs them.
    if (answer.view().starts_with(u"error -1728") && answer.view().ends_with(u"of current application."))
        return Answer::skip("needs the bridge to another language");
    return answer;
}

} // namespace caddis::facts
