#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/NumberText.h"
#include "platform/script/applescript/Operators.h"
#include "platform/script/applescript/SourceText.h"

#include <cmath>

namespace caddis::applescript {

namespace {

[[noreturn]] void failDivision(const Datum& left)
{
    fail(ScriptErrorNumber::DivideByZero, format(u"Can’t divide %@ by zero.", sourceText(left)));
}

Datum finite(double value)
{
    if (!std::isfinite(value))
        fail(ScriptErrorNumber::NumberTooLarge, String(u"The result of a numeric operation was too large."));
    return Datum::real(value);
}

Datum reals(Operator operation, double left, double right)
{
    switch (operation) {
    case Operator::Add:
        return finite(left + right);
    case Operator::Subtract:
        return finite(left - right);
    case Operator::Multiply:
        return finite(left * right);
    case Operator::Divide:
        return finite(left / right);
    case Operator::IntegerDivide:
        return wholeIfPossible(finite(std::trunc(left / right)).asReal());
    case Operator::Remainder:
        return finite(std::fmod(left, right));
    default:
        return finite(std::pow(left, right));
    }
}

std::int64_t seconds(Interpreter& interpreter, const Datum& value)
{
    const double number = requireNumber(interpreter, value).asReal();
    constexpr double Most = 1e15;
    if (!(std::abs(number) < Most))
        fail(ScriptErrorNumber::NumberTooLarge, String(u"The number is too large."));
    return static_cast<std::int64_t>(number);
}

// A date moves by seconds; the difference of two dates is seconds.
Datum dates(Interpreter& interpreter, Operator operation, const DateObject& left, const Datum& right)
{
    if (const auto* other = right.get<DateObject>(); other && operation == Operator::Subtract)
        return Datum::number(left.seconds - other->seconds);
    if (operation != Operator::Add && operation != Operator::Subtract)
        failCoercion(Datum::object(const_cast<DateObject*>(&left)), Symbol::Number);
    const std::int64_t moved = seconds(interpreter, right);
    return make<DateObject>(left.seconds + (operation == Operator::Add ? moved : -moved));
}

Datum units(Interpreter& interpreter, Operator operation, const UnitObject& left, const Datum& right)
{
    double other = 0;
    if (const auto* unit = right.get<UnitObject>()) {
        const auto same = convertUnit(*unit, left.unit);
        if (!same)
            failCoercion(right, left.unit);
        other = same->as<UnitObject>().value;
    } else {
        other = requireNumber(interpreter, right).asReal();
    }
    return make<UnitObject>(left.unit, reals(operation, left.value, other).asReal());
}

} // namespace

Datum arithmetic(
    Interpreter& interpreter, Operator operation, const Datum& leftDatum, const Datum& rightDatum)
{
    const Datum leftValue = interpreter.value(leftDatum);
    const Datum rightValue = interpreter.value(rightDatum);
    if (const auto* date = leftValue.get<DateObject>())
        return dates(interpreter, operation, *date, rightValue);
    if (const auto* date = rightValue.get<DateObject>(); date && operation == Operator::Add)
        return dates(interpreter, operation, *date, leftValue);
    if (const auto* unit = leftValue.get<UnitObject>())
        return units(interpreter, operation, *unit, rightValue);
    const Datum left = requireNumber(interpreter, leftValue);
    const Datum right = requireNumber(interpreter, rightValue);
    const bool divides = operation == Operator::Divide || operation == Operator::IntegerDivide
        || operation == Operator::Remainder;
    if (divides && right.asReal() == 0)
        failDivision(left);
    if (left.is(Kind::Integer) && right.is(Kind::Integer)) {
        if (auto result = integerResult(operation, left.asInteger(), right.asInteger()))
            return *std::move(result);
    }
    return reals(operation, left.asReal(), right.asReal());
}

Datum negate(Interpreter& interpreter, const Datum& value)
{
    const Datum number = requireNumber(interpreter, value);
    return number.is(Kind::Integer) ? Datum::number(-number.asInteger()) : Datum::real(-number.asReal());
}

} // namespace caddis::applescript
