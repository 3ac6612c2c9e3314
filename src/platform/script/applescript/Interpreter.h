#pragma once

#include "platform/script/ScriptingComponent.h"
#include "platform/script/applescript/Heap.h"
#include "platform/script/applescript/ScriptObject.h"

#include <chrono>
#include <map>
#include <span>

namespace caddis::applescript {

/// What all scripts of the process share: the language's own properties.
struct LanguageState {
    std::vector<String> textItemDelimiters { String() };
    std::uint64_t delimitersVersion = 1; ///< changes with the delimiters
    String clipboard;
};

LanguageState& languageState();

struct OpenFile;
class ApplicationTable;

/// Runs one compiled script and keeps its memory. Not for several threads at once.
class Interpreter {
public:
    Interpreter();
    ~Interpreter();

    Heap& heap() { return m_heap; }

    /// Starts the clocks of one call from outside. A call inside a call keeps the outer one's clocks.
    class Call {
    public:
        Call(Interpreter& interpreter, const ScriptLimits& limits);
        ~Call();
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;

    private:
        Interpreter& m_interpreter;
        Heap::Scope m_scope;
    };

    /// Counts one statement or loop round; fails with -1712 when the steps or the time are used up.
    void step()
    {
        if (--m_fuel == 0)
            refuel();
    }
    /// Fails with -2706 when little of the stack is left.
    void checkStack() const;
    /// Time until the deadline, at least a millisecond; for waits of commands.
    std::chrono::milliseconds timeLeft() const;

    /// The value itself, or what a reference refers to at this moment.
    Datum value(const Datum& datum) { return datum.is(Kind::Reference) ? referenced(datum) : datum; }
    Datum referenced(const Datum& reference);

    /// Runs a handler; `self` is its `me`. Fails with -1721 when the arguments do not fit.
    Datum call(const Callee& callee, ScriptObject& self, std::span<Datum> arguments);
    /// The same for a handler that is called as a command.
    struct LabelledArguments {
        Datum direct;
        std::vector<std::pair<Symbol, Datum>> labelled;
    };
    Datum callLabelled(const Callee& callee, ScriptObject& self, const LabelledArguments& arguments);
    /// The script's run handler, written out or not; no value when it has none.
    Datum run(ScriptObject& script);

    ApplicationTable& applications() { return *m_applications; }

    Range position; ///< of the statement that runs
    String scriptPath; ///< of the file that the script came from, or empty
    std::map<String, std::shared_ptr<OpenFile>> openFiles;
    /// How long an application may take to answer: `with timeout`.
    std::chrono::milliseconds eventTimeout = DefaultEventTimeout;

    static constexpr std::chrono::milliseconds DefaultEventTimeout { 120'000 };

private:
    void refuel();
    Datum runBody(const HandlerCode& handler, Frame& frame) const;
    template <typename Bind> Datum enter(const Callee& callee, ScriptObject& self, Bind bind);

    Heap m_heap;
    std::unique_ptr<ApplicationTable> m_applications;
    unsigned m_calls = 0;
    std::uint32_t m_fuel = 1;
    std::uint64_t m_stepsLeft = 0;
    bool m_countsSteps = false;
    std::chrono::steady_clock::time_point m_deadline;
    const char* m_stackFloor = nullptr;
};

} // namespace caddis::applescript
