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

Datum apply(Interpreter& interpreter, Operator operation, const Datum& left, const Datum& right);
Datum negate(Interpreter& interpreter, const Datum& value);

Datum arithmetic(Interpreter& interpreter, Operator operation, const Datum& left, const Datum& right);
Datum concatenate(Interpreter& interpreter, const Datum& left, const Datum& right);

/// Equal without any coercion: 1 is 1.0 but not "1". A reference equals only the same reference.
bool areEqual(Interpreter& interpreter, const Datum& left, const Datum& right);
bool contains(Interpreter& interpreter, const Datum& container, const Datum& part);

} // namespace caddis::applescript
