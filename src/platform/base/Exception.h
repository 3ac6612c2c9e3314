#pragma once

#include "platform/base/Format.h"

#include <exception>
#include <string>
#include <type_traits>
#include <vector>

namespace caddis {

/// The one exception of the platform adapters; nothing above `platform/` throws it or names a library's
/// errors.
class Exception : public std::exception {
public:
    /// `name` says what kind of failure it is, in one word; `reason` says it to a person.
    Exception(String name, String reason);

    const String& name() const noexcept { return m_name; }
    const String& reason() const noexcept { return m_reason; }
    /// The stack at construction, innermost first; one symbol a line.
    String callStackSymbols() const;
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    String m_name;
    String m_reason;
    std::string m_what;
    std::vector<void*> m_callStack;
};

/// Logs "%@ (%@): %@\n%@\n%@": method, class, the exception's name and reason, its call stack.
void logException(std::u16string_view method, std::u16string_view className, const Exception& exception);

/// Runs `work`; a platform exception is logged under the method and class and ends in an empty result.
/// Other exceptions (no memory, a broken invariant) pass.
///
///     guarded(u"initWithFile:", u"EPUBParser", [&] { parsePackage(); });
template <typename Work>
std::invoke_result_t<Work&> guarded(std::u16string_view method, std::u16string_view className, Work&& work)
{
    try {
        return work();
    } catch (const Exception& exception) {
        logException(method, className, exception);
        return std::invoke_result_t<Work&>();
    }
}

} // namespace caddis
