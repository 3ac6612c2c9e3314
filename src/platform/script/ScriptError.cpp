#include "platform/script/ScriptError.h"

#include "platform/base/Format.h"

namespace caddis {

namespace {

// A quoted property-list string.
void appendQuoted(MutableString& out, std::u16string_view text)
{
    out.append(u'"');
    for (const char16_t unit : text) {
        if (unit == u'"' || unit == u'\\')
            out.append(u'\\');
        if (unit == u'\n')
            out.append(u"\\n");
        else
            out.append(unit);
    }
    out.append(u'"');
}

void appendEntry(MutableString& out, std::u16string_view key, std::u16string_view value)
{
    out.append(u"    ").append(key).append(u" = ");
    appendQuoted(out, value);
    out.append(u";\n");
}

} // namespace

String withApplicationName(const String& applicationName, const String& message)
{
    return applicationName.isEmpty() ? message : format(u"%@ got an error: %@", applicationName, message);
}

String ScriptErrorInfo::description() const
{
    MutableString out;
    out.append(u"{\n");
    if (!applicationName.isEmpty())
        appendEntry(out, u"NSAppleScriptErrorAppName", applicationName);
    appendEntry(out, u"NSAppleScriptErrorBriefMessage", message);
    appendEntry(out, u"NSAppleScriptErrorMessage", withApplicationName(applicationName, message));
    appendEntry(out, u"NSAppleScriptErrorNumber", format(u"%d", number));
    if (range.isFound())
        appendEntry(
            out, u"NSAppleScriptErrorRange", format(u"NSRange: {%d, %d}", range.location, range.length));
    out.append(u"}");
    return std::move(out).take();
}

} // namespace caddis
