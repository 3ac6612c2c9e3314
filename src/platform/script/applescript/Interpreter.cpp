#include "platform/script/applescript/Interpreter.h"

#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/OpenFile.h"
#include "platform/script/applescript/Terms.h"
#include "platform/script/applescript/TextComparison.h"

#include <algorithm>
#include <array>
#include <sys/resource.h>

namespace caddis::applescript {

namespace {

constexpr std::uint32_t StepsBetweenLooks = 4096; // at the clock
constexpr std::size_t MostStack = 6 << 20;

// Half of what a thread may have is plenty for any script; the rest is for the caller and for what a node
// needs below the last check.
std::size_t usableStack()
{
    rlimit limit {};
    if (getrlimit(RLIMIT_STACK, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
        return MostStack;
    return std::min<std::size_t>(limit.rlim_cur / 2, MostStack);
}

const char* stackPointer() { return static_cast<const char*>(__builtin_frame_address(0)); }

String argumentList(std::span<const Datum> arguments) { return format(u"%d parameters", arguments.size()); }

} // namespace

LanguageState& languageState()
{
    static LanguageState state;
    return state;
}

// The words of all phrases get their numbers before the first script brings its own.
Interpreter::Interpreter()
    : m_heap(std::size_t { 512 } << 20)
    , m_applications(std::make_unique<ApplicationTable>())
{
    static const bool isVocabularyMade = (matchTerm({}, true), matchCommand({}), matchEventHandler({}), true);
    static_cast<void>(isVocabularyMade);
}

Interpreter::~Interpreter() = default;

Interpreter::Call::Call(Interpreter& interpreter, const ScriptLimits& limits)
    : m_interpreter(interpreter)
    , m_scope(interpreter.m_heap)
{
    if (interpreter.m_calls++)
        return;
    interpreter.m_heap.setLimit(limits.memory);
    interpreter.m_deadline = std::chrono::steady_clock::now() + limits.deadline;
    interpreter.m_countsSteps = limits.steps != 0;
    interpreter.m_stepsLeft = limits.steps;
    interpreter.m_fuel = 1;
    interpreter.m_stackFloor = stackPointer() - usableStack();
    currentAttributes() = DefaultAttributes;
    interpreter.position = {};
    interpreter.eventTimeout = DefaultEventTimeout;
    interpreter.m_applications->forgetUnknown();
}

Interpreter::Call::~Call()
{
    if (--m_interpreter.m_calls == 0)
        m_interpreter.openFiles.clear();
}

void Interpreter::refuel()
{
    const bool outOfSteps = m_countsSteps && m_stepsLeft == 0;
    if (outOfSteps || std::chrono::steady_clock::now() >= m_deadline) {
        m_fuel = 1;
        Failure failure;
        failure.number = static_cast<int>(ScriptErrorNumber::TimedOut);
        failure.message = String(u"The script timed out.");
        failure.endsScript = true;
        throw Failure(failure);
    }
    m_fuel = StepsBetweenLooks;
    if (m_countsSteps) {
        m_fuel = static_cast<std::uint32_t>(std::min<std::uint64_t>(m_fuel, m_stepsLeft));
        m_stepsLeft -= m_fuel;
    }
}

void Interpreter::checkStack() const
{
    if (stackPointer() < m_stackFloor)
        fail(ScriptErrorNumber::StackOverflow, String(u"Stack overflow."));
}

std::chrono::milliseconds Interpreter::timeLeft() const
{
    using std::chrono::milliseconds;
    const auto left = std::chrono::duration_cast<milliseconds>(m_deadline - std::chrono::steady_clock::now());
    return std::max(left, milliseconds(1));
}

Datum Interpreter::referenced(const Datum& reference)
{
    Datum datum = reference;
    for (unsigned hops = 0; datum.is(Kind::Reference); ++hops) {
        if (hops > 1000)
            fail(ScriptErrorNumber::StackOverflow, String(u"Stack overflow."));
        const auto& object = datum.as<ReferenceObject>();
        datum = get(*this, object.container, object.selector);
    }
    return datum;
}

template <typename Bind> Datum Interpreter::enter(const Callee& callee, ScriptObject& self, Bind bind)
{
    checkStack();
    step();
    constexpr std::size_t FewLocals = 8;
    const HandlerCode& handler = *callee.handler;
    std::array<Datum, FewLocals> few;
    std::vector<Datum> many(handler.localCount > FewLocals ? handler.localCount : 0);
    // The scripts outlive the call whatever it assigns.
    const Datum keepSelf = Datum::object(&self);
    const Datum keepHome = Datum::object(callee.home);
    Frame frame { *this, many.empty() ? few.data() : many.data(), &self, callee.home, Datum() };
    bind(handler, frame);
    const Range caller = position;
    Datum result = runBody(handler, frame);
    position = caller;
    return result;
}

Datum Interpreter::runBody(const HandlerCode& handler, Frame& frame) const
{
    const Flow flow = handler.body.execute(frame);
    return std::move(flow == Flow::Return ? frame.returned : frame.result);
}

Datum Interpreter::call(const Callee& callee, ScriptObject& self, std::span<Datum> arguments)
{
    return enter(callee, self, [&](const HandlerCode& handler, Frame& frame) {
        // More arguments than the handler has places for are left out, as published libraries rely on.
        if (handler.isLabelled || arguments.size() < handler.positional.size())
            fail(ScriptErrorNumber::ParameterMismatch,
                format(u"The handler %@ cannot be called with %@.", sourceName(handler.name),
                    argumentList(arguments)));
        for (std::size_t index = 0; index < handler.positional.size(); ++index)
            handler.positional[index]->assign(frame, arguments[index]);
    });
}

Datum Interpreter::callLabelled(const Callee& callee, ScriptObject& self, const LabelledArguments& arguments)
{
    return enter(callee, self, [&](const HandlerCode& handler, Frame& frame) {
        const ExpressionPointer* first = handler.direct ? &handler.direct
            : handler.positional.empty()                ? nullptr
                                                        : &handler.positional[0];
        if (first && *first) {
            if (!arguments.direct.isSet())
                fail(ScriptErrorNumber::ParameterMissing, String(u"The direct parameter is missing."));
            (*first)->assign(frame, arguments.direct);
        }
        for (const auto& parameter : handler.labelled) {
            const auto given
                = std::ranges::find(arguments.labelled, parameter.label, &std::pair<Symbol, Datum>::first);
            if (given != arguments.labelled.end())
                parameter.pattern->assign(frame, given->second);
            else if (parameter.fallback)
                parameter.pattern->assign(frame, parameter.fallback->evaluate(frame));
            else
                fail(ScriptErrorNumber::ParameterMissing,
                    format(u"The parameter “%@” is missing.", sourceName(parameter.label)));
        }
    });
}

Datum Interpreter::run(ScriptObject& script)
{
    if (const Callee handler = findHandler(script, Symbol::Run); handler && handler.home == &script) {
        if (handler.handler->positional.empty())
            return callLabelled(handler, script, { make<List>(), {} });
        std::array<Datum, 1> none { make<List>() };
        return call(handler, script, none);
    }
    if (!script.code.statements) {
        ScriptObject* parent = script.parentScript();
        if (!parent || parent == script.enclosing())
            return {};
        return run(*parent);
    }
    const Callee statements { script.code.statements.get(), &script };
    return enter(statements, script, [](const HandlerCode&, Frame&) {});
}

} // namespace caddis::applescript
