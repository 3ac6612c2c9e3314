#include "platform/script/applescript/Scopes.h"

#include "platform/script/applescript/Failure.h"

#include <algorithm>

namespace caddis::applescript {

Variable::~Variable()
{
    if (scope)
        scope->forgetUse(*this);
}

void HandlerScope::addUse(Variable& variable)
{
    variable.scope = this;
    variable.useInScope = m_uses.size();
    m_uses.push_back(&variable);
}

void HandlerScope::resolve()
{
    for (const Symbol name : m_locals) {
        if (m_globals.contains(name))
            fail(ScriptErrorNumber::LocalAndGlobal,
                format(u"The variable %@ can’t be both local and global.", sourceName(name)));
    }
    for (Variable* variable : m_uses) {
        if (!variable)
            continue;
        resolve(*variable);
        variable->scope = nullptr;
    }
}

// A handler's own declarations first, then what the script around it has; a name that nothing declares is a
// variable of the handler, or, among a script's own statements, a global.
void HandlerScope::resolve(Variable& variable)
{
    const Symbol name = variable.name;
    const auto beLocal = [&] {
        variable.place = Variable::Place::Local;
        variable.slot = localSlot(name);
    };
    const auto beGlobal = [&] {
        variable.place = Variable::Place::Global;
        variable.slot = script.globalSlot(name);
    };
    const bool isDeclared = m_locals.contains(name) || m_globals.contains(name);
    const bool isFound = !isDeclared && script.locate(variable, kind);
    if (isFound && variable.place == Variable::Place::Capture && kind == Kind::Handler
        && m_assigned.contains(name)) {
        variable.fallsBack = true;
        variable.fallbackDepth = variable.scriptDepth;
        variable.fallbackSlot = variable.slot;
        beLocal();
    } else if (!isFound) {
        const bool isLocal = m_locals.contains(name) || (kind == Kind::Handler && !m_globals.contains(name));
        if (isLocal)
            beLocal();
        else if (isDeclared || kind == Kind::Statements)
            beGlobal();
    }
}

unsigned HandlerScope::localSlot(Symbol name)
{
    const auto [entry, isNew] = m_slots.try_emplace(name, static_cast<unsigned>(m_slots.size()));
    if (isNew && code)
        code->localCount = static_cast<unsigned>(m_slots.size());
    return entry->second;
}

bool ScriptScope::locate(Variable& variable, HandlerScope::Kind user)
{
    const Symbol name = variable.name;
    ScriptScope* scope = this;
    for (unsigned depth = 0;; ++depth) {
        variable.scriptDepth = depth;
        if (const auto slot = scope->code.slotOfName.find(name); slot != scope->code.slotOfName.end()) {
            variable.place = Variable::Place::Slot;
            variable.slot = slot->second;
            return true;
        }
        HandlerScope* const outer = scope->handler;
        const bool isGlobal = scope->m_globals.contains(name) || (outer && outer->isGlobalFor(user, name));
        if (isGlobal) {
            variable.place = Variable::Place::Global;
            variable.slot = globalSlot(name);
            return true;
        }
        if (!outer)
            return false;
        // A script inside a handler knows itself by its name before the variable of that name is set.
        if (scope->code.name == name && name != Symbol::None
            && outer->kind != HandlerScope::Kind::Initializers) {
            variable.place = Variable::Place::Script;
            return true;
        }
        if (outer->owns(name)) {
            variable.place = Variable::Place::Capture;
            variable.slot = scope->captureSlot(name);
            return true;
        }
        scope = &outer->script;
    }
}

unsigned ScriptScope::globalSlot(Symbol name)
{
    ScriptScope* top = this;
    while (top->handler)
        top = &top->handler->script;
    const auto [entry, isNew]
        = top->code.globalOfName.try_emplace(name, static_cast<unsigned>(top->code.globals.size()));
    if (isNew)
        top->code.globals.push_back(name);
    return entry->second;
}

unsigned ScriptScope::captureSlot(Symbol name)
{
    const auto found = std::ranges::find(code.captures, name, &ScriptCode::Capture::name);
    if (found != code.captures.end())
        return static_cast<unsigned>(found - code.captures.begin());
    code.captures.push_back({ name, handler->localSlot(name) });
    return static_cast<unsigned>(code.captures.size() - 1);
}

ScriptScope& Scopes::openScript(ScriptCode& code)
{
    HandlerScope* const around = m_handlers.empty() ? nullptr : m_handlers.back();
    m_allScripts.push_back(std::make_unique<ScriptScope>(code, around));
    m_scripts.push_back(m_allScripts.back().get());
    return *m_scripts.back();
}

void Scopes::closeScript() { m_scripts.pop_back(); }

HandlerScope& Scopes::openHandler(HandlerScope::Kind kind, HandlerCode* code)
{
    m_allHandlers.push_back(std::make_unique<HandlerScope>(script(), kind, code));
    m_handlers.push_back(m_allHandlers.back().get());
    return *m_handlers.back();
}

void Scopes::closeHandler() { m_handlers.pop_back(); }

bool Scopes::isLocal(Symbol name) const
{
    return std::ranges::any_of(m_handlers, [&](const HandlerScope* scope) { return scope->declares(name); });
}

bool Scopes::isDeclared(Symbol name) const
{
    return isLocal(name)
        || std::ranges::any_of(m_scripts, [&](const ScriptScope* scope) { return scope->declares(name); });
}

Scopes::Mark Scopes::mark() const
{
    return { m_scripts.size(), m_handlers.size(), m_allScripts.size(), m_allHandlers.size() };
}

void Scopes::restore(const Mark& mark)
{
    m_handlers.resize(mark.handlers);
    m_scripts.resize(mark.scripts);
    m_allHandlers.resize(mark.allHandlers);
    m_allScripts.resize(mark.allScripts);
}

void Scopes::resolveAll()
{
    for (const auto& scope : m_allHandlers)
        scope->resolve();
}

} // namespace caddis::applescript
