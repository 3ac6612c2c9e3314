#pragma once

#include "platform/script/applescript/Syntax.h"

#include <optional>

namespace caddis::applescript {

class ExpressionStatement final : public Statement {
public:
    ExpressionStatement(Range itsRange, ExpressionPointer itsExpression)
        : Statement(itsRange)
        , expression(std::move(itsExpression))
    {
    }
    Flow execute(Frame& frame) const override;

    ExpressionPointer expression;
};

/// set place to value; copy value to place
class SetStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    ExpressionPointer place;
    ExpressionPointer value;
    bool copies = false;
};

class IfStatement final : public Statement {
public:
    struct Branch {
        ExpressionPointer condition; ///< none: else
        Block body;
    };

    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    std::vector<Branch> branches;
};

class TellStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    ExpressionPointer target;
    Block body;
};

class TryStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    Block body;
    Block handler;
    /// Places for what the error says; none where it does not interest.
    ExpressionPointer message, number, offender, expected, partialResult;
};

class ErrorStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    ExpressionPointer message, number, offender, expected, partialResult;
};

class ReturnStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    ExpressionPointer value; ///< may be none
};

/// exit repeat
class ExitStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame&) const override { return Flow::Exit; }
};

/// considering and ignoring
class AttributesStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    unsigned considered = 0;
    unsigned ignored = 0;
    Block body;
};

/// with timeout of n seconds: how long the applications told inside may take to answer.
class TimeoutStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    ExpressionPointer seconds;
    Block body;
};

/// Statements in a frame that changes nothing here: with transaction, using terms from.
class BlockStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override { return body.execute(frame); }

    Block body;
};

/// A script object inside a handler: made when the statement is reached.
class ScriptStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    std::unique_ptr<ScriptCode> code;
    ExpressionPointer place; ///< the variable of its name; none for a nameless script
};

/// repeat … end repeat, and repeat while, until, n times.
class RepeatStatement final : public Statement {
public:
    enum class Form : std::uint8_t { Forever, While, Until, Times };

    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    Form form = Form::Forever;
    ExpressionPointer condition; ///< or the number of rounds
    Block body;
};

/// repeat with i from a to b by c
class RepeatFromStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    ExpressionPointer place, first, last, step;
    Block body;
};

/// repeat with x in list: x refers to one item after the other.
class RepeatInStatement final : public Statement {
public:
    using Statement::Statement;
    Flow execute(Frame& frame) const override;

    ExpressionPointer place, list;
    Block body;
};

} // namespace caddis::applescript
