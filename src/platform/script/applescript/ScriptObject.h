#pragma once

#include "platform/script/applescript/Objects.h"
#include "platform/script/applescript/Syntax.h"

namespace caddis::applescript {

/// A script: the values of its properties, and where its code and its parent stand.
class ScriptObject final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Script;

    /// `enclosing` is the script whose code made this one; null for a top-level script.
    ScriptObject(
        std::shared_ptr<const Program> itsProgram, const ScriptCode& itsCode, ScriptObject* enclosing);

    ~ScriptObject() override;

    /// One of the script's own places by name; null pointer when it has none. A handler's place that was
    /// never assigned is not set: see `Callee`.
    Datum* find(Symbol name);

    /// The script this one asks next: its parent, where that is a script.
    ScriptObject* parentScript() const { return parent.get<ScriptObject>(); }
    ScriptObject* enclosing() const { return m_enclosing.get<ScriptObject>(); }
    ScriptObject& ancestor(unsigned depth)
    {
        ScriptObject* script = this;
        for (; depth; --depth)
            script = script->enclosing();
        return *script;
    }
    /// The outermost enclosing script, which holds the globals.
    ScriptObject& top();

    const std::shared_ptr<const Program> program;
    const ScriptCode& code;
    std::vector<Datum> slots;
    std::vector<Datum> captures;
    std::vector<Datum> globals;
    Datum parent;

private:
    void dropReferences() override;

    Datum m_enclosing;
};

/// A handler taken as a value. It keeps the script where it was written.
class HandlerObject final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Handler;

    HandlerObject(const HandlerCode& itsCode, Datum itsHome)
        : code(itsCode)
        , home(std::move(itsHome))
    {
    }

    const HandlerCode& code;
    Datum home;

private:
    void dropReferences() override { home = Datum(); }
};

/// A handler and the script whose code it is.
struct Callee {
    const HandlerCode* handler = nullptr;
    ScriptObject* home = nullptr;

    explicit operator bool() const { return handler != nullptr; }
};

/// Looks for a handler in the script, its parents, and the globals of its source.
Callee findHandler(ScriptObject& script, Symbol name);
/// The handler that stands in one place of a script, if one does.
Callee handlerInSlot(ScriptObject& script, unsigned slot);
/// The value of one place; a handler becomes a value of its own.
Datum slotValue(ScriptObject& script, unsigned slot);

/// Makes a script object, takes along what it captures from `frame`, and sets its properties.
Datum instantiate(
    Interpreter& interpreter, std::shared_ptr<const Program> program, const ScriptCode& code, Frame* frame);

} // namespace caddis::applescript
