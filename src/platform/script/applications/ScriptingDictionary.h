#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"
#include "platform/script/FourCharCode.h"

#include <optional>
#include <vector>

/// Scripting definitions (sdef): the words that an application understands, and their codes.
namespace caddis {

/// What a script can say to one application. Names have one to five plain words; entries with other names or
/// without a code are left out, and so is what takes part in no conversation (documentation, hidden flags).
struct ScriptingDictionary {
    struct Term {
        String name;
        FourCharCode code = 0;
    };
    struct Class {
        String name;
        String plural; ///< as the dictionary has it, or the name and an "s"
        FourCharCode code = 0;
    };
    struct Parameter {
        String name;
        FourCharCode code = 0;
        bool isBoolean = false; ///< may be given by "with" and "without"
    };
    struct Command {
        String name;
        FourCharCode eventClass = 0;
        FourCharCode eventID = 0;
        std::vector<Parameter> parameters; ///< without the direct one
    };

    std::vector<Class> classes;
    std::vector<Term> properties;
    std::vector<Term> enumerators;
    std::vector<Command> commands;
};

/// Classes, properties, enumerators, commands and parameters in one dictionary, at most.
inline constexpr std::size_t MaximumDictionaryTerms = 10'000;

/// Reads the XML of a scripting definition. Nothing is included, with one exception: an include of the
/// platform's CocoaStandard.sdef stands for a standard suite that is built in. The command quit is always
/// there. Nil for XML that is not well formed, has no dictionary, or too many terms.
std::optional<ScriptingDictionary> scriptingDictionary(const Data& xml);

} // namespace caddis
