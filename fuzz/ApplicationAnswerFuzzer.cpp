// What an application answers, as a script's value and as what is sent back.
//
// Invariants: any record gives a value, a source text, and a descriptor that can be read again, unless it is
// refused as too deep.

#include "Fuzz.h"
#include "platform/script/FlattenedDescriptor.h"
#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Bridge.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/SourceText.h"

using namespace caddis;
using namespace caddis::applescript;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto answer = unflattenDescriptor(Data::copyOf({ reinterpret_cast<const char*>(data), size }));
    if (!answer)
        return 0;
    static const auto dictionary = scriptingDictionary(Data::copyOf(
        "<dictionary><class name='a b' code='docu'/><property name='c' code='pnam'/></dictionary>"));
    static const auto fuzz = std::make_shared<ScriptableApplication>(String(u"Fuzz"), *dictionary);
    Interpreter interpreter;
    const Interpreter::Call call(interpreter, {});
    const auto terms = std::make_shared<const ApplicationTerms>(fuzz);
    const Datum application = make<ApplicationObject>(String(u"Fuzz"), terms);
    const Datum value = valueFromDescriptor(*answer, application);
    INVARIANT(sourceText(value).length() < (1U << 25));
    try {
        const auto sent = descriptorFromValue(interpreter, value, terms.get());
        INVARIANT(unflattenDescriptor(flattenDescriptor(sent)).has_value());
    } catch (const Failure& failure) {
        INVARIANT(failure.is(ScriptErrorNumber::StackOverflow));
    }
    return 0;
}
