#include "platform/script/applescript/Commands.h"

#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Terms.h"

#include <algorithm>

namespace caddis::applescript {

namespace {

struct CommandTable {
    std::vector<const CommandSpec*> specs;
    PhraseTable names;
    std::vector<PhraseTable> parameters; ///< by the same index
};

const CommandTable& table()
{
    static const CommandTable made = [] {
        CommandTable result;
        for (const auto group : { coreCommands(), scriptCommands(), textCommands(), fileCommands(),
                 systemCommands(), interactionCommands(), fileApplicationCommands() }) {
            for (const CommandSpec& spec : group) {
                result.names.add(String::fromLatin1(spec.name), result.specs.size());
                result.specs.push_back(&spec);
                PhraseTable& labels = result.parameters.emplace_back();
                for (std::size_t index = 0; index < spec.parameters.size(); ++index)
                    labels.add(String::fromLatin1(spec.parameters[index].label), index);
            }
        }
        return result;
    }();
    return made;
}

std::size_t indexOf(const CommandSpec& spec)
{
    const auto& specs = table().specs;
    return static_cast<std::size_t>(std::ranges::find(specs, &spec) - specs.begin());
}

} // namespace

CommandMatch matchCommand(std::span<const Symbol> words)
{
    const PhraseTable::Match match = table().names.longest(words);
    return match.words ? CommandMatch { table().specs[match.value], match.words } : CommandMatch();
}

std::optional<std::pair<std::size_t, std::size_t>> matchParameter(
    const CommandSpec& spec, std::span<const Symbol> words)
{
    const PhraseTable& labels = spec.remote ? spec.remote->phrases : table().parameters[indexOf(spec)];
    const PhraseTable::Match match = labels.longest(words);
    return match.words ? std::optional(std::pair(match.value, match.words)) : std::nullopt;
}

const Datum& CommandCall::argument(std::string_view label) const
{
    static const Datum none;
    for (std::size_t index = 0; index < spec.parameters.size(); ++index) {
        if (spec.parameters[index].label == label)
            return m_arguments[index];
    }
    return none;
}

bool CommandCall::flag(std::string_view label, bool fallback) const
{
    const Datum& value = argument(label);
    return value.isSet() ? requireBoolean(interpreter, value) : fallback;
}

Datum CommandCall::requireDirect() const
{
    if (!direct.isSet())
        fail(ScriptErrorNumber::ParameterMissing, format(u"%s needs a parameter.", spec.name));
    return interpreter.value(direct);
}

} // namespace caddis::applescript
