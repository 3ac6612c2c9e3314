#include "platform/script/applescript/Failure.h"

#include "platform/script/applescript/SourceText.h"

namespace caddis::applescript {

String Failure::fullMessage() const { return withApplicationName(applicationName, message); }

void fail(ScriptErrorNumber number, const String& message)
{
    Failure failure;
    failure.number = static_cast<int>(number);
    failure.message = message;
    throw Failure(failure);
}

void failCoercion(const Datum& value, Symbol wanted)
{
    Failure failure;
    failure.number = static_cast<int>(ScriptErrorNumber::CannotCoerce);
    failure.message = format(u"Can’t make %@ into type %@.", sourceText(value), sourceName(wanted));
    failure.offender = value;
    failure.expected = Datum::classNamed(wanted);
    throw Failure(failure);
}

void failGet(const String& what, const Datum& container, ScriptErrorNumber number)
{
    Failure failure;
    failure.number = static_cast<int>(number);
    failure.message = container.isSet() ? format(u"Can’t get %@ of %@.", what, sourceText(container))
                                        : format(u"Can’t get %@.", what);
    failure.offender = container;
    throw Failure(failure);
}

} // namespace caddis::applescript
