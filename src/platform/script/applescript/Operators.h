#pragma once

#include "platform/script/applescript/Interpreter.h"

namespace caddis::applescript {

enum class Operator : std::uint8_t {
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Remainder,
    Power,
    Concatenate,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    StartsWith,
    EndsWith,
    DoesNotStartWith,
    DoesNotEndWith,
    Contains,
    DoesNotContain,
    IsIn,
    IsNotIn,
};

/// Whole numbers need no look at anything else. They have 30 bits, so that no sum or product leaves 64. Nil
/// where the general way must be taken.
inline std::optional<Datum> integerResult(Operator operation, std::int64_t left, std::int64_t right)
{
    switch (operation) {
    case Operator::Add:
        return Datum::number(left + right);
    case Operator::Subtract:
        return Datum::number(left - right);
    case Operator::Multiply:
        return Datum::number(left * right);
    case Operator::IntegerDivide:
        return right ? std::optional(Datum::number(left / right)) : std::nullopt;
    case Operator::Remainder:
        return right ? std::optional(Datum::number(left % right)) : std::nullopt;
    case Operator::Equal:
        return Datum::boolean(left == right);
    case Operator::NotEqual:
        return Datum::boolean(left != right);
    case Operator::Less:
        return Datum::boolean(left < right);
    case Operator::LessOrEqual:
        return Datum::boolean(left <= right);
    case Operator::Greater:
        return Datum::boolean(left > right);
    case Operator::GreaterOrEqual:
        return Datum::boolean(left >= right);
    default:
        return std::nullopt;
    }
}

Datum apply(Interpreter& interpreter, Operator operation, const Datum& left, const Datum& right);
Datum negate(Interpreter& interpreter, const Datum& value);

Datum arithmetic(Interpreter& interpreter, Operator operation, const Datum& left, const Datum& right);
Datum concatenate(Interpreter& interpreter, const Datum& left, const Datum& right);

/// Equal without any coercion: 1 is 1.0 but not "1". A reference equals only the same reference.
bool areEqual(Interpreter& interpreter, const Datum& left, const Datum& right);
bool contains(Interpreter& interpreter, const Datum& container, const Datum& part);

} // namespace caddis::applescript
