#include "platform/script/applescript/ScriptObject.h"

#include "platform/script/applescript/Interpreter.h"

namespace caddis::applescript {

ScriptObject::ScriptObject(
    std::shared_ptr<const Program> itsProgram, const ScriptCode& itsCode, ScriptObject* enclosing)
    : program(std::move(itsProgram))
    , code(itsCode)
    , slots(itsCode.slots.size())
    , captures(itsCode.captures.size())
    , globals(itsCode.globals.size())
{
    charge(sizeof(ScriptObject) + (slots.size() + captures.size() + globals.size()) * sizeof(Datum));
    if (enclosing) {
        m_enclosing = Datum::object(enclosing);
        parent = m_enclosing;
    }
}

ScriptObject::~ScriptObject()
{
    refund(sizeof(ScriptObject)
        + (code.slots.size() + code.captures.size() + code.globals.size()) * sizeof(Datum));
}

Datum* ScriptObject::find(Symbol name)
{
    if (const auto slot = code.slotOfName.find(name); slot != code.slotOfName.end())
        return &slots[slot->second];
    if (const auto global = code.globalOfName.find(name); global != code.globalOfName.end())
        return &globals[global->second];
    return nullptr;
}

ScriptObject& ScriptObject::top()
{
    ScriptObject* script = this;
    while (ScriptObject* outer = script->enclosing())
        script = outer;
    return *script;
}

void ScriptObject::dropReferences()
{
    slots.assign(slots.size(), Datum());
    captures.assign(captures.size(), Datum());
    globals.assign(globals.size(), Datum());
    parent = Datum();
    m_enclosing = Datum();
}

Callee handlerInSlot(ScriptObject& script, unsigned slot)
{
    const Datum& value = script.slots[slot];
    if (const auto* handler = value.get<HandlerObject>())
        return { &handler->code, handler->home.get<ScriptObject>() };
    const ScriptCode::Slot& place = script.code.slots[slot];
    if (!value.isSet() && place.kind == ScriptCode::SlotKind::Handler)
        return { place.handler.get(), &script };
    return {};
}

Callee findHandler(ScriptObject& script, Symbol name)
{
    ScriptObject* last = &script;
    for (ScriptObject* at = &script; at; at = at->parentScript()) {
        last = at;
        const auto slot = at->code.slotOfName.find(name);
        if (slot == at->code.slotOfName.end())
            continue;
        if (const Callee found = handlerInSlot(*at, slot->second))
            return found;
    }
    ScriptObject& top = last->top();
    if (const auto global = top.code.globalOfName.find(name); global != top.code.globalOfName.end()) {
        if (const auto* handler = top.globals[global->second].get<HandlerObject>())
            return { &handler->code, handler->home.get<ScriptObject>() };
    }
    return {};
}

Datum slotValue(ScriptObject& script, unsigned slot)
{
    const Callee handler = handlerInSlot(script, slot);
    if (handler && !script.slots[slot].isSet())
        return make<HandlerObject>(*handler.handler, Datum::object(handler.home));
    return script.slots[slot];
}

namespace {

void fillSlots(Interpreter& interpreter, ScriptObject& script, Frame& frame)
{
    if (script.code.parent)
        script.parent = interpreter.value(script.code.parent->evaluate(frame));
    for (std::size_t index = 0; index < script.code.slots.size(); ++index) {
        const ScriptCode::Slot& slot = script.code.slots[index];
        if (slot.kind == ScriptCode::SlotKind::Script)
            script.slots[index] = instantiate(interpreter, script.program, *slot.script, &frame);
        else if (slot.kind == ScriptCode::SlotKind::Property)
            script.slots[index] = interpreter.value(slot.initializer->evaluate(frame));
    }
}

} // namespace

Datum instantiate(
    Interpreter& interpreter, std::shared_ptr<const Program> program, const ScriptCode& code, Frame* frame)
{
    interpreter.checkStack();
    Datum made = make<ScriptObject>(std::move(program), code, frame ? frame->home : nullptr);
    auto& script = made.as<ScriptObject>();
    for (std::size_t index = 0; index < code.captures.size(); ++index)
        script.captures[index] = frame->locals[code.captures[index].slot];
    // A property's first value may use what was captured, but has no variables of its own.
    Frame inner { interpreter, nullptr, &script, &script, Datum() };
    fillSlots(interpreter, script, inner);
    return made;
}

} // namespace caddis::applescript
