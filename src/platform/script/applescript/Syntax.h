#pragma once

#include "platform/base/Range.h"
#include "platform/script/applescript/Datum.h"

#include <memory>
#include <unordered_map>
#include <vector>

/// A compiled script: a tree whose nodes run themselves. Variables are places (a slot, a depth) by the time
/// it runs; no name is looked up on the way.
namespace caddis::applescript {

class Interpreter;
class ApplicationTerms;

/// One running handler.
struct Frame {
    Interpreter& interpreter;
    Datum* locals;
    ScriptObject* self; ///< `me`: whom the call was sent to
    ScriptObject* home; ///< whose code runs: `self` or one of its parents
    Datum target; ///< `it` inside a tell block; not set outside
    Datum result {}; ///< of the last statement
    Datum returned {}; ///< by `return`
};

/// Nodes on top of each other, an expression's own node included, at most.
inline constexpr unsigned MaximumTreeDepth = 2'000;

class Expression {
public:
    Expression() = default;
    virtual ~Expression() = default;
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    virtual Datum evaluate(Frame& frame) const = 0;
    /// What `a reference to` makes of it: the value itself where there is nothing to refer to.
    virtual Datum reference(Frame& frame) const { return evaluate(frame); }
    /// What stands behind `of` or `tell`: an object of an application outside is named there, not asked for.
    virtual Datum asContainer(Frame& frame) const { return evaluate(frame); }
    /// Gives the place that the expression names a value. Fails with -10006 where it names none.
    virtual void assign(Frame& frame, const Datum& value) const;

    unsigned depth = 1;
};

using ExpressionPointer = std::unique_ptr<Expression>;

/// How a statement left: on to the next, out of a repeat, out of the handler.
enum class Flow : std::uint8_t { Next, Exit, Return };

class Statement {
public:
    explicit Statement(Range itsRange)
        : range(itsRange)
    {
    }
    virtual ~Statement() = default;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    virtual Flow execute(Frame& frame) const = 0;

    Range range;
};

struct Block {
    std::vector<std::unique_ptr<Statement>> statements;

    Flow execute(Frame& frame) const;
};

struct HandlerCode {
    struct Labelled {
        Symbol label;
        ExpressionPointer pattern;
        ExpressionPointer fallback; ///< of an optional parameter; usually none
    };

    Symbol name = Symbol::None;
    std::vector<ExpressionPointer> positional; ///< places that the arguments are assigned to
    ExpressionPointer direct; ///< of a handler with labelled parameters, if it has one
    std::vector<Labelled> labelled;
    bool isLabelled = false; ///< called as a command: foo of x given y:z
    Block body;
    unsigned localCount = 0;
};

struct ScriptCode {
    enum class SlotKind : std::uint8_t { Property, Handler, Script };

    struct Slot {
        Symbol name;
        SlotKind kind;
        ExpressionPointer initializer; ///< of a property
        std::unique_ptr<HandlerCode> handler;
        std::unique_ptr<ScriptCode> script;
        Range initializerRange {}; ///< from behind the property's name on, in the source
    };

    /// A variable of the enclosing handler that this script's code uses: its value is taken along when the
    /// script object is made.
    struct Capture {
        Symbol name;
        unsigned slot; ///< among the enclosing handler's locals
    };

    Symbol name = Symbol::None;
    Range bodyRange; ///< of its lines, in the source
    std::vector<Slot> slots;
    std::unordered_map<Symbol, unsigned> slotOfName;
    std::vector<Capture> captures;
    ExpressionPointer parent;
    std::unique_ptr<HandlerCode> statements; ///< the implicit run handler, if there is one
    std::vector<Symbol> globals; ///< of a top-level script
    std::unordered_map<Symbol, unsigned> globalOfName;
};

/// One compiled source.
struct Program {
    String source;
    /// Whose dictionaries the source is written in; their commands are part of the tree.
    std::vector<std::shared_ptr<const ApplicationTerms>> applications;
    ScriptCode script;
};

} // namespace caddis::applescript
