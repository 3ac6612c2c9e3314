#pragma once

#include "platform/script/applescript/Coercions.h"

#include <span>

/// The commands that scripts find without any application: the standard additions, and the file commands.
namespace caddis::applescript {

class CommandCall;
struct RemoteCommand;

struct CommandParameter {
    std::string_view label; ///< one or more words: "with title"
    bool isFlag = false; ///< given as `with label` or `without label`
};

struct CommandSpec {
    std::string_view name; ///< one or more words
    Datum (*perform)(CommandCall& call);
    std::span<const CommandParameter> parameters;
    /// The direct parameter binds tighter than any operator: ASCII character 10 & "x".
    bool bindsTightly = false;
    bool takesWholeExpression = false; ///< the direct parameter may be a comparison: log a = b
    bool takesReference = false; ///< the direct parameter is not looked into: exists x
    bool defaultsToTarget = false; ///< without a direct parameter, `it` is meant
    bool needsDirect = false; ///< a word of its own otherwise: a variable named `round`
    bool isOfFiles = false; ///< only understood by the built-in file applications
    bool takesContainer = false; ///< objects of applications are not asked for their values: count x
    const RemoteCommand* remote = nullptr; ///< of an application's dictionary
};

/// One command with its arguments.
class CommandCall {
public:
    CommandCall(Frame& itsFrame, const CommandSpec& itsSpec)
        : frame(itsFrame)
        , interpreter(itsFrame.interpreter)
        , spec(itsSpec)
        , m_arguments(itsSpec.parameters.size())
    {
    }

    void setArgument(std::size_t parameter, Datum value) { m_arguments[parameter] = std::move(value); }
    const Datum& argumentAt(std::size_t parameter) const { return m_arguments[parameter]; }
    /// Not set when the argument is not given.
    const Datum& argument(std::string_view label) const;
    bool flag(std::string_view label, bool fallback) const;
    /// The direct parameter's value; fails with -1701 without one.
    Datum requireDirect() const;
    String directText() const { return requireText(interpreter, requireDirect()); }
    String directPath() const { return requirePath(interpreter, requireDirect()); }

    Frame& frame;
    Interpreter& interpreter;
    const CommandSpec& spec;
    Datum direct;

private:
    std::vector<Datum> m_arguments;
};

/// Every command; grouped by subject in the files of the same names.
std::span<const CommandSpec> coreCommands();
std::span<const CommandSpec> scriptCommands();
std::span<const CommandSpec> textCommands();
std::span<const CommandSpec> fileCommands();
std::span<const CommandSpec> systemCommands();
std::span<const CommandSpec> interactionCommands();
std::span<const CommandSpec> fileApplicationCommands();

/// A command and the words its name takes.
struct CommandMatch {
    const CommandSpec* spec = nullptr;
    std::size_t words = 0;
};

/// The command with the longest name that `words` begin with.
CommandMatch matchCommand(std::span<const Symbol> words);
/// The parameter of a command with the longest label that `words` begin with.
std::optional<std::pair<std::size_t, std::size_t>> matchParameter(
    const CommandSpec& spec, std::span<const Symbol> words);

} // namespace caddis::applescript
