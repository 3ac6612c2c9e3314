#pragma once

#include "platform/base/MutableString.h"
#include "platform/base/URL.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <string_view>
#include <type_traits>

/// Formatting by the system's own patterns, checked by the compiler.
///
///     format(u"Unable to locate %@ in %@", name, archiveName)
///
/// %@  a String, UTF-16 text or a URL      %s  8-bit text, read as UTF-8
/// %d  an integer                          %C  one UTF-16 unit             %%  a percent sign
///
/// The number and the kinds of the arguments must fit the pattern, or the call does not compile.
namespace caddis {

namespace detail {

template <typename T> consteval char16_t specifierFor()
{
    using Bare = std::remove_cvref_t<T>;
    if constexpr (std::same_as<Bare, char16_t>)
        return u'C';
    else if constexpr (std::integral<Bare>)
        return u'd';
    else if constexpr (std::convertible_to<const Bare&, std::u16string_view> || std::same_as<Bare, URL>)
        return u'@';
    else if constexpr (std::convertible_to<T, std::string_view>)
        return u's';
    else
        return 0;
}

// Called only where a pattern and its arguments disagree; not being constexpr, it stops the compilation.
void patternDoesNotFitItsArguments();

inline void appendArgument(MutableString& out, char16_t value) { out.append(value); }
inline void appendArgument(MutableString& out, std::u16string_view value) { out.append(value); }
inline void appendArgument(MutableString& out, const String& value) { out.append(value.view()); }
inline void appendArgument(MutableString& out, const URL& value) { out.append(value.absoluteString()); }
inline void appendArgument(MutableString& out, std::string_view value) { out.appendUtf8(value); }
inline void appendArgument(MutableString& out, const char* value) { out.appendUtf8(value); }
void appendArgument(MutableString& out, std::int64_t value);
template <std::integral T>
requires(!std::same_as<T, char16_t>) void appendArgument(MutableString& out, T value)
{
    appendArgument(out, static_cast<std::int64_t>(value));
}

// Appends up to the next argument and returns the pattern behind its specifier.
std::u16string_view appendUpToSpecifier(MutableString& out, std::u16string_view pattern);

} // namespace detail

/// A literal pattern that fits arguments of these types.
template <typename... Arguments> class FormatPattern {
public:
    template <std::size_t Size>
    consteval FormatPattern(const char16_t (&pattern)[Size]) // NOLINT(google-explicit-constructor)
        : m_pattern(pattern, Size - 1)
    {
        constexpr std::array<char16_t, sizeof...(Arguments) + 1> expected {
            detail::specifierFor<Arguments>()..., 0
        };
        std::size_t argument = 0;
        for (std::size_t index = 0; index + 1 < Size; ++index) {
            if (pattern[index] != u'%' || pattern[++index] == u'%')
                continue;
            if (argument == sizeof...(Arguments) || pattern[index] != expected[argument++])
                detail::patternDoesNotFitItsArguments();
        }
        if (argument != sizeof...(Arguments))
            detail::patternDoesNotFitItsArguments();
    }

    std::u16string_view view() const { return m_pattern; }

private:
    std::u16string_view m_pattern;
};

template <typename... Arguments>
String format(FormatPattern<std::type_identity_t<Arguments>...> pattern, const Arguments&... arguments)
{
    MutableString out(pattern.view().size() + 32 * sizeof...(Arguments));
    std::u16string_view rest = pattern.view();
    ((rest = detail::appendUpToSpecifier(out, rest), detail::appendArgument(out, arguments)), ...);
    detail::appendUpToSpecifier(out, rest);
    return std::move(out).take();
}

} // namespace caddis
