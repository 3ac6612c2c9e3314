#pragma once

#include "platform/script/applescript/Operators.h"
#include "platform/script/applescript/Syntax.h"

namespace caddis::applescript {

/// The value of a condition; fails with -1700 for what is no boolean.
bool truth(Frame& frame, const Expression& condition);

/// A value that never changes.
class Literal final : public Expression {
public:
    explicit Literal(Datum itsValue)
        : value(std::move(itsValue))
    {
    }
    Datum evaluate(Frame&) const override { return value; }

    Datum value;
};

/// {a, b}: a new list each time; on the left of `to`, a pattern.
class ListExpression final : public Expression {
public:
    Datum evaluate(Frame& frame) const override;
    void assign(Frame& frame, const Datum& value) const override;

    std::vector<ExpressionPointer> items;
};

/// {a:b, c:d}
class RecordExpression final : public Expression {
public:
    Datum evaluate(Frame& frame) const override;
    void assign(Frame& frame, const Datum& value) const override;

    std::vector<std::pair<Symbol, ExpressionPointer>> fields;
};

class BinaryExpression final : public Expression {
public:
    BinaryExpression(Operator itsOperation, ExpressionPointer itsLeft, ExpressionPointer itsRight)
        : operation(itsOperation)
        , left(std::move(itsLeft))
        , right(std::move(itsRight))
    {
    }
    Datum evaluate(Frame& frame) const override;

    Operator operation;
    ExpressionPointer left;
    ExpressionPointer right;
};

/// `and`, `or`: the right side is only looked at when the left one does not decide.
class LogicExpression final : public Expression {
public:
    LogicExpression(bool decides, ExpressionPointer itsLeft, ExpressionPointer itsRight)
        : decidingValue(decides)
        , left(std::move(itsLeft))
        , right(std::move(itsRight))
    {
    }
    Datum evaluate(Frame& frame) const override;

    bool decidingValue;
    ExpressionPointer left;
    ExpressionPointer right;
};

class NotExpression final : public Expression {
public:
    explicit NotExpression(ExpressionPointer itsOperand)
        : operand(std::move(itsOperand))
    {
    }
    Datum evaluate(Frame& frame) const override;

    ExpressionPointer operand;
};

class NegateExpression final : public Expression {
public:
    explicit NegateExpression(ExpressionPointer itsOperand)
        : operand(std::move(itsOperand))
    {
    }
    Datum evaluate(Frame& frame) const override;

    ExpressionPointer operand;
};

/// value as class
class CoerceExpression final : public Expression {
public:
    CoerceExpression(ExpressionPointer itsValue, ExpressionPointer itsType)
        : value(std::move(itsValue))
        , type(std::move(itsType))
    {
    }
    Datum evaluate(Frame& frame) const override;

    ExpressionPointer value;
    ExpressionPointer type;
};

/// a reference to x
class ReferenceExpression final : public Expression {
public:
    explicit ReferenceExpression(ExpressionPointer itsTarget)
        : target(std::move(itsTarget))
    {
    }
    Datum evaluate(Frame& frame) const override { return target->reference(frame); }

    ExpressionPointer target;
};

/// get x: the value, even where a part of x would have been named by itself.
class GetExpression final : public Expression {
public:
    explicit GetExpression(ExpressionPointer itsOperand)
        : operand(std::move(itsOperand))
    {
        depth = operand->depth + 1;
    }
    Datum evaluate(Frame& frame) const override;

    ExpressionPointer operand;
};

/// application "x", date "x", alias "x", POSIX file "x": a class and what the object is made from.
class ObjectExpression final : public Expression {
public:
    ObjectExpression(Symbol itsClass, ExpressionPointer itsKey)
        : objectClass(itsClass)
        , key(std::move(itsKey))
    {
    }
    Datum evaluate(Frame& frame) const override;

    Symbol objectClass;
    ExpressionPointer key;
};

/// What stands in a tell block to an application whose dictionary is not known, and does not parse without
/// it.
class UnknownExpression final : public Expression {
public:
    Datum evaluate(Frame& frame) const override;
};

/// A copy that shares nothing: lists, records and dates through and through, scripts with their properties.
Datum deepCopy(Interpreter& interpreter, const Datum& value);

} // namespace caddis::applescript
