#pragma once

#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Terms.h"
#include "platform/script/applications/ScriptableApplication.h"

#include <array>
#include <deque>
#include <map>

namespace caddis::applescript {

/// A command of an application's dictionary: how it is written, and what is sent.
struct RemoteCommand {
    FourCharCode eventClass = 0;
    FourCharCode eventID = 0;
    std::string name;
    std::deque<std::string> labels;
    std::vector<CommandParameter> parameters;
    std::vector<FourCharCode> codes; ///< of the parameters
    PhraseTable phrases { symbolOfPlainName }; ///< the labels, by parameter
    CommandSpec spec;
};

enum class TermRole : std::uint8_t { Class, Property, Enumerator };

/// The dictionary of an application in the names of one script.
class ApplicationTerms {
public:
    /// Adds the dictionary's words to the names of the current heap.
    explicit ApplicationTerms(std::shared_ptr<const ScriptableApplication> application);

    const ScriptableApplication& application() const { return *m_application; }

    TermMatch match(std::span<const Symbol> words) const;
    CommandMatch matchCommand(std::span<const Symbol> words) const;

    /// The dictionary's code for a name, 0 without one.
    FourCharCode code(TermRole role, Symbol name) const;
    /// Symbol::None for a code that the dictionary does not have.
    Symbol name(TermRole role, FourCharCode code) const;

private:
    struct Codes {
        std::unordered_map<Symbol, FourCharCode> codes;
        std::unordered_map<FourCharCode, Symbol> names;
    };

    void add(TermRole role, unsigned kinds, const String& name, FourCharCode code);
    void addPhrase(const String& phrase, Symbol symbol, unsigned kinds, bool isPlural);
    void addCommand(const ScriptingDictionary::Command& command);

    std::shared_ptr<const ScriptableApplication> m_application;
    PhraseTable m_phrases { symbolOfPlainName };
    std::vector<TermMatch> m_matches; ///< by a phrase's value; without the number of its words
    PhraseTable m_commandNames { symbolOfPlainName };
    std::deque<RemoteCommand> m_commands;
    std::array<Codes, 3> m_codes; ///< by role
};

/// The applications that one script has named so far.
class ApplicationTable {
public:
    /// Null for an application without a dictionary, and for those whose words are built in.
    std::shared_ptr<const ApplicationTerms> named(const String& name);
    /// Those that were not found are looked for again from now on.
    void forgetUnknown();

private:
    std::map<String, std::shared_ptr<const ApplicationTerms>> m_terms; ///< null: looked for in vain
};

/// The code of a name: by the dictionary, if there is one, else the language's own, else the one that the
/// name itself tells («class docu»). 0 without any.
FourCharCode codeOf(const ApplicationTerms* terms, TermRole role, Symbol name);
/// The other way round; a code that nobody knows becomes a name that tells it.
Symbol nameWithCode(const ApplicationTerms* terms, TermRole role, FourCharCode code);

} // namespace caddis::applescript
