#include "platform/script/MacRoman.h"
#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/NumberText.h"
#include "platform/script/applescript/Randomness.h"
#include "platform/script/applescript/TextComparison.h"
#include "platform/script/applescript/TextElements.h"

#include <cmath>

namespace caddis::applescript {

namespace {

// The character's position where a text first stands in another, 0 when it does not.
Datum offset(CommandCall& call)
{
    const String wanted = requireText(call.interpreter, call.argument("of"));
    const Datum holder = coerce(call.interpreter, call.argument("in"), Symbol::Text);
    const String& text = holder.as<Text>().value();
    TextSearch search(text, { wanted });
    const FoundRange found = search.next();
    if (!found)
        return Datum::integer(0);
    const Datum before = Datum::text(text.substringTo(found.location));
    return Datum::number(static_cast<std::int64_t>(countTextElements(before, Symbol::Character)) + 1);
}

Datum asciiCharacter(CommandCall& call)
{
    const std::int64_t number = requireInteger(call.interpreter, call.requireDirect());
    if (number < 0 || number > 255)
        fail(ScriptErrorNumber::CannotCoerce, String(u"The number is not that of a character."));
    const char byte = static_cast<char>(number);
    return Datum::text(stringFromMacRoman({ &byte, 1 }));
}

Datum asciiNumber(CommandCall& call)
{
    const String text = call.directText();
    if (text.isEmpty())
        failGet(String(u"character 1"), call.direct);
    return Datum::integer(macRomanByte(text[0]).value_or(u'?'));
}

constexpr double LargestRound = 1e18;

// Halves go to the even neighbour unless the script was taught otherwise.
double rounded(double value, Symbol way)
{
    switch (way) {
    case Symbol::Up:
        return std::ceil(value);
    case Symbol::Down:
        return std::floor(value);
    case Symbol::TowardZero:
        return std::trunc(value);
    case Symbol::AsTaughtInSchool:
        return std::round(value);
    default:
        return std::nearbyint(value);
    }
}

Datum round(CommandCall& call)
{
    const double value = requireNumber(call.interpreter, call.requireDirect()).asReal();
    const Datum& way = call.argument("rounding");
    const double result = rounded(value, way.is(Kind::Constant) ? way.asSymbol() : Symbol::ToNearest);
    return std::abs(result) < LargestRound ? wholeIfPossible(result) : Datum::real(result);
}

// A whole number between whole ends, a real otherwise; without ends a real from 0 to 1.
Datum randomNumber(CommandCall& call)
{
    Interpreter& interpreter = call.interpreter;
    if (const Datum& seed = call.argument("with seed"); seed.isSet())
        seedRandomness(static_cast<std::uint64_t>(requireNumber(interpreter, seed).asReal()));
    Datum low = call.argument("from");
    Datum high = call.argument("to").isSet() ? call.argument("to") : call.direct;
    if (!low.isSet() && !high.isSet())
        return Datum::real(randomFraction());
    low = low.isSet() ? requireNumber(interpreter, low) : Datum::integer(0);
    high = high.isSet() ? requireNumber(interpreter, high) : Datum::integer(100);
    if (low.asReal() > high.asReal())
        low.swap(high);
    if (low.is(Kind::Integer) && high.is(Kind::Integer)) {
        const auto choices = static_cast<std::size_t>(high.asInteger() - low.asInteger()) + 1;
        return Datum::number(low.asInteger() + static_cast<std::int64_t>(randomBelow(choices)));
    }
    return Datum::real(low.asReal() + randomFraction() * (high.asReal() - low.asReal()));
}

constexpr CommandParameter offsetParameters[] = { { "of" }, { "in" } };
constexpr CommandParameter roundParameters[] = { { "rounding" } };
constexpr CommandParameter randomParameters[] = { { "from" }, { "to" }, { "with seed" } };

constexpr CommandSpec commands[] = {
    { .name = "offset", .perform = offset, .parameters = offsetParameters, .needsDirect = true },
    { .name = "ASCII character", .perform = asciiCharacter, .parameters = {}, .bindsTightly = true },
    { .name = "ASCII number", .perform = asciiNumber, .parameters = {}, .bindsTightly = true },
    { .name = "round", .perform = round, .parameters = roundParameters, .needsDirect = true },
    { .name = "random number",
        .perform = randomNumber,
        .parameters = randomParameters,
        .bindsTightly = true },
};

} // namespace

std::span<const CommandSpec> textCommands() { return commands; }

} // namespace caddis::applescript
