#pragma once

#include "platform/script/applescript/Variables.h"

#include <unordered_set>

/// Where names are declared, and what each use of a name means. A use is only understood when the whole
/// source is read: a property may stand below the handlers that use it.
namespace caddis::applescript {

class ScriptScope;

/// The names of one handler, of a script's own statements, or of the first values of its properties.
class HandlerScope {
public:
    enum class Kind : std::uint8_t { Handler, Statements, Initializers };

    HandlerScope(ScriptScope& itsScript, Kind itsKind, HandlerCode* itsCode)
        : script(itsScript)
        , kind(itsKind)
        , code(itsCode)
    {
    }

    void declareLocal(Symbol name) { m_locals.insert(name); }
    void declareGlobal(Symbol name) { m_globals.insert(name); }
    void noteAssigned(Symbol name) { m_assigned.insert(name); }
    /// A use takes itself back when it goes, for a name that turned out to be no variable.
    void addUse(Variable& variable);
    void forgetUse(const Variable& variable) { m_uses[variable.useInScope] = nullptr; }
    bool declares(Symbol name) const { return m_locals.contains(name) || m_globals.contains(name); }
    /// A name that is a variable of this handler's own, whatever it is outside.
    bool owns(Symbol name) const
    {
        return kind == Kind::Handler
            ? m_locals.contains(name) || (m_assigned.contains(name) && !m_globals.contains(name))
            : m_locals.contains(name);
    }
    /// Whether scripts inside see the name as a global: their handlers only when it is declared as one.
    bool isGlobalFor(Kind user, Symbol name) const
    {
        return m_globals.contains(name)
            || (kind == Kind::Statements && user != Kind::Handler && m_assigned.contains(name));
    }

    void resolve();
    unsigned localSlot(Symbol name);

    ScriptScope& script;
    const Kind kind;
    HandlerCode* const code;

private:
    void resolve(Variable& variable);

    std::unordered_set<Symbol> m_locals;
    std::unordered_set<Symbol> m_globals;
    std::unordered_set<Symbol> m_assigned;
    std::unordered_map<Symbol, unsigned> m_slots;
    std::vector<Variable*> m_uses;
};

/// The names of one script.
class ScriptScope {
public:
    ScriptScope(ScriptCode& itsCode, HandlerScope* itsHandler)
        : code(itsCode)
        , handler(itsHandler)
    {
    }

    void declareGlobal(Symbol name) { m_globals.insert(name); }
    bool declares(Symbol name) const { return m_globals.contains(name) || code.slotOfName.contains(name); }

    /// Where a use in this script's code finds the name outside of its handler; false when nowhere.
    bool locate(Variable& variable, HandlerScope::Kind user);
    unsigned globalSlot(Symbol name);

    ScriptCode& code;
    HandlerScope* const handler; ///< in which the script stands; null for a top-level script

private:
    unsigned captureSlot(Symbol name);

    std::unordered_set<Symbol> m_globals;
};

/// All scopes of one source, and the one being read.
class Scopes {
public:
    ScriptScope& openScript(ScriptCode& code);
    void closeScript();
    HandlerScope& openHandler(HandlerScope::Kind kind, HandlerCode* code);
    void closeHandler();

    ScriptScope& script() { return *m_scripts.back(); }
    HandlerScope& handler() { return *m_handlers.back(); }
    bool insideHandler() const
    {
        return !m_handlers.empty() && m_handlers.back()->kind == HandlerScope::Kind::Handler;
    }
    /// Whether an enclosing handler or script declares the name outright, so that it is no term here.
    bool isDeclared(Symbol name) const;
    /// Whether an enclosing handler has a variable of that name.
    bool isLocal(Symbol name) const;

    /// Where the reading stands, so that what is read from here on can be forgotten.
    struct Mark {
        std::size_t scripts, handlers, allScripts, allHandlers;
    };
    Mark mark() const;
    void restore(const Mark& mark);

    /// Gives every use of a name its place.
    void resolveAll();

private:
    std::vector<std::unique_ptr<ScriptScope>> m_allScripts;
    std::vector<std::unique_ptr<HandlerScope>> m_allHandlers;
    std::vector<ScriptScope*> m_scripts;
    std::vector<HandlerScope*> m_handlers;
};

} // namespace caddis::applescript
