#pragma once

#include "platform/script/applescript/ScriptObject.h"
#include "platform/script/applescript/Syntax.h"

namespace caddis::applescript {

/// name(a, b) and name:a with:b, which is a call of `name:with:`.
class CallExpression final : public Expression {
public:
    explicit CallExpression(Symbol itsName)
        : name(itsName)
    {
    }
    Datum evaluate(Frame& frame) const override;

    Symbol name;
    ExpressionPointer target; ///< none: `it`, else `me`
    std::vector<ExpressionPointer> arguments;
    bool continues = false; ///< `continue name(…)`: the parent's handler, with this `me`
};

/// name direct given a:b, with c, from d
class LabelledCallExpression final : public Expression {
public:
    explicit LabelledCallExpression(Symbol itsName)
        : name(itsName)
    {
    }
    Datum evaluate(Frame& frame) const override;

    Symbol name;
    ExpressionPointer target;
    ExpressionPointer direct;
    std::vector<std::pair<Symbol, ExpressionPointer>> labelled;
    bool continues = false;
};

struct CommandSpec;

/// A command of the standard additions, or one that an application understands.
class CommandExpression final : public Expression {
public:
    explicit CommandExpression(const CommandSpec& itsSpec)
        : spec(itsSpec)
    {
    }
    Datum evaluate(Frame& frame) const override;

    const CommandSpec& spec;
    ExpressionPointer direct;
    /// By parameter of the command; a flag is a literal boolean.
    std::vector<std::pair<std::size_t, ExpressionPointer>> arguments;
};

} // namespace caddis::applescript
