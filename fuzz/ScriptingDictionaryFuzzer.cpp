// Scripting definitions (sdef), and the words of a script that they become.
//
// Invariants: any bytes give a dictionary or nil; one has no more terms than it may; each of its properties
// and commands is found again by its words.

#include "Fuzz.h"
#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Interpreter.h"

using namespace caddis;
using namespace caddis::applescript;

namespace {

std::vector<Symbol> wordsOf(std::u16string_view name)
{
    std::vector<Symbol> words;
    for (std::size_t end = 0; end != std::u16string_view::npos;
         name.remove_prefix(end == name.npos ? 0 : end + 1)) {
        end = name.find(u' ');
        words.push_back(symbolOfPlainName(name.substr(0, end)));
    }
    return words;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    auto dictionary = scriptingDictionary(Data::copyOf({ reinterpret_cast<const char*>(data), size }));
    if (!dictionary)
        return 0;
    INVARIANT(dictionary->classes.size() + dictionary->properties.size() + dictionary->commands.size()
        <= MaximumDictionaryTerms + 2);
    Interpreter interpreter;
    const Interpreter::Call call(interpreter, {});
    const ApplicationTerms terms(std::make_shared<ScriptableApplication>(String(u"Fuzz"), *dictionary));
    for (const auto& command : dictionary->commands)
        INVARIANT(terms.matchCommand(wordsOf(command.name)).spec != nullptr);
    for (const auto& property : dictionary->properties)
        INVARIANT(
            terms.code(TermRole::Property, symbolOfPlainName(property.name)) != 0 || property.code == 0);
    return 0;
}
