#include "platform/base/Log.h"
#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"

namespace caddis::applescript {

namespace {

// There is nobody to ask: what would have been shown goes to the log.
Datum refuse(CommandCall& call)
{
    const auto text = call.direct.isSet() ? textOf(call.interpreter, call.direct) : std::nullopt;
    log(u"%s: %@", call.spec.name, text.value_or(String()));
    fail(ScriptErrorNumber::NoUserInteraction, String(u"No user interaction allowed."));
}

// Nothing depends on their being heard.
Datum ignore(CommandCall&) { return {}; }

constexpr CommandParameter dialogParameters[]
    = { { "default answer" }, { "hidden answer" }, { "buttons" }, { "default button" }, { "cancel button" },
          { "with title" }, { "with icon" }, { "giving up after" }, { "message" }, { "as" }, { "subtitle" },
          { "sound name" }, { "hidden answer", true }, { "icon" }, { "title" } };
constexpr CommandParameter chooseParameters[] = { { "with prompt" }, { "of type" }, { "default location" },
    { "default name" }, { "with title" }, { "default items" }, { "OK button name" }, { "cancel button name" },
    { "invisibles", true }, { "multiple selections allowed", true }, { "showing package contents", true },
    { "empty selection allowed", true }, { "prompt" }, { "default color" }, { "as" }, { "showing" },
    { "editable URL" }, { "from" } };
constexpr CommandParameter sayParameters[] = { { "using" }, { "displaying" }, { "saving to" },
    { "speaking rate" }, { "waiting until completion" }, { "volume" }, { "pitch" }, { "modulation" } };

constexpr CommandSpec commands[] = {
    { .name = "display dialog", .perform = refuse, .parameters = dialogParameters },
    { .name = "display alert", .perform = refuse, .parameters = dialogParameters },
    { .name = "display notification", .perform = refuse, .parameters = dialogParameters },
    { .name = "choose file", .perform = refuse, .parameters = chooseParameters, .bindsTightly = true },
    { .name = "choose file name", .perform = refuse, .parameters = chooseParameters, .bindsTightly = true },
    { .name = "choose folder", .perform = refuse, .parameters = chooseParameters, .bindsTightly = true },
    { .name = "choose from list", .perform = refuse, .parameters = chooseParameters },
    { .name = "choose color", .perform = refuse, .parameters = chooseParameters, .bindsTightly = true },
    { .name = "choose application", .perform = refuse, .parameters = chooseParameters, .bindsTightly = true },
    { .name = "choose remote application",
        .perform = refuse,
        .parameters = chooseParameters,
        .bindsTightly = true },
    { .name = "choose URL", .perform = refuse, .parameters = chooseParameters, .bindsTightly = true },
    { .name = "beep", .perform = ignore, .parameters = {}, .bindsTightly = true },
    { .name = "say", .perform = ignore, .parameters = sayParameters, .needsDirect = true },
    { .name = "open location", .perform = refuse, .parameters = {} },
};

} // namespace

std::span<const CommandSpec> interactionCommands() { return commands; }

} // namespace caddis::applescript
