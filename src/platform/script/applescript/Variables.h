#pragma once

#include "platform/script/applescript/ScriptObject.h"
#include "platform/script/applescript/Syntax.h"

namespace caddis::applescript {

class HandlerScope;

/// A name whose place the parser found out.
class Variable final : public Expression {
public:
    enum class Place : std::uint8_t {
        Unknown,
        Local, ///< slot of the frame
        Slot, ///< slot of the script `scriptDepth` levels out from the code's own
        Global, ///< slot of the outermost script's globals
        Capture, ///< capture of the script `scriptDepth` levels out
        Script, ///< that script itself
    };

    explicit Variable(Symbol itsName)
        : name(itsName)
    {
    }
    ~Variable() override;
    Datum evaluate(Frame& frame) const override;
    Datum reference(Frame& frame) const override;
    void assign(Frame& frame, const Datum& value) const override;

    Symbol name;
    Place place = Place::Unknown;
    unsigned scriptDepth = 0;
    unsigned slot = 0;
    /// For a local that hides a variable of the enclosing handler: what it is until it is first set.
    bool fallsBack = false;
    unsigned fallbackDepth = 0;
    unsigned fallbackSlot = 0;
    /// While the source is read: the scope that will give it its place, and its number there.
    HandlerScope* scope = nullptr;
    std::size_t useInScope = 0;

private:
    Datum unsetLocal(Frame& frame) const;
    [[noreturn]] void failUndefined() const;
};

/// me
class MeExpression final : public Expression {
public:
    Datum evaluate(Frame& frame) const override { return Datum::object(frame.self); }
};

/// it
class ItExpression final : public Expression {
public:
    Datum evaluate(Frame& frame) const override
    {
        return frame.target.isSet() ? frame.target : Datum::object(frame.self);
    }
};

/// result: the value of the last statement.
class ResultExpression final : public Expression {
public:
    Datum evaluate(Frame& frame) const override;
};

} // namespace caddis::applescript
