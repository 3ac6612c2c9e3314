#include "platform/base/Exception.h"

#include "platform/base/Log.h"

#include <cstdlib>
#include <execinfo.h>
#include <memory>

namespace caddis {

namespace {

constexpr int MaximumDepth = 64;

std::vector<void*> currentCallStack()
{
    std::vector<void*> frames(MaximumDepth);
    frames.resize(static_cast<std::size_t>(backtrace(frames.data(), MaximumDepth)));
    return frames;
}

} // namespace

Exception::Exception(String name, String reason)
    : m_name(std::move(name))
    , m_reason(std::move(reason))
    , m_what(format(u"%@: %@", m_name, m_reason).utf8())
    , m_callStack(currentCallStack())
{
}

String Exception::callStackSymbols() const
{
    const std::unique_ptr<char*, decltype(&std::free)> symbols(
        backtrace_symbols(m_callStack.data(), static_cast<int>(m_callStack.size())), std::free);
    MutableString lines;
    for (std::size_t index = 0; symbols && index < m_callStack.size(); ++index) {
        if (index > 0)
            lines.append(u'\n');
        lines.appendUtf8(symbols.get()[index]);
    }
    return std::move(lines).take();
}

void logException(std::u16string_view method, std::u16string_view className, const Exception& exception)
{
    log(u"%@ (%@): %@\n%@\n%@", method, className, exception.name(), exception.reason(),
        exception.callStackSymbols());
}

} // namespace caddis
