#pragma once

#include "platform/base/Exception.h"
#include "platform/ipc/Wire.h"

#include <string_view>

/// What the writer and the reader of the codec share.
namespace caddis::wire {

[[noreturn]] inline void fail(std::u16string_view error, std::u16string_view reason)
{
    throw Exception(String(error), String(reason));
}

/// Cuts the first complete type off a signature made of the types that the codec knows.
inline std::string_view nextType(std::string_view& signature)
{
    using namespace std::string_view_literals;
    std::size_t length = 1;
    for (const auto compound : { "aa{sv}"sv, "a{sv}"sv, "(uay)"sv, "av"sv }) {
        if (signature.starts_with(compound)) {
            length = compound.size();
            break;
        }
    }
    const auto type = signature.substr(0, length);
    signature.remove_prefix(length);
    return type;
}

/// The code of a nil (uay).
inline constexpr std::uint32_t NullCode = 'n' << 24 | 'u' << 16 | 'l' << 8 | 'l';

/// Counts what one message holds. A value is charged with at least its bytes on the wire, padding included,
/// and with about what it takes in memory, so that both stay bounded.
class Budget {
public:
    static constexpr std::size_t ValueCost = 32;

    explicit Budget(std::size_t limit)
        : m_left(limit)
    {
    }
    void charge(std::size_t bytes, std::u16string_view error)
    {
        if (bytes > m_left)
            fail(error, u"the message is too long");
        m_left -= bytes;
    }

private:
    std::size_t m_left;
};

} // namespace caddis::wire
