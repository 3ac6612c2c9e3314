#include "platform/script/applescript/Symbols.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unordered_map>

namespace caddis::applescript {

namespace {

constexpr unsigned W = ReservedWord, C = ClassName, E = ElementClass, P = PropertyName, K = ConstantName,
                   A = FileApplicationProperty;

struct Term {
    std::string_view spelling;
    FourCharCode code;
    unsigned kinds;
};

constexpr Term terms[] = {
#define TERM(symbol, spelling, code, kinds) { spelling, code, kinds },
#include "platform/script/applescript/Terms.def"
#undef TERM
};
constexpr std::size_t TermCount = std::size(terms);

String lowerCase(std::u16string_view text)
{
    std::u16string lower(text.size() * 3 + 1, u'\0');
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = u_strToLower(lower.data(), static_cast<int32_t>(lower.size()), text.data(),
        static_cast<int32_t>(text.size()), "", &status);
    return U_SUCCESS(status) ? String(std::u16string_view(lower).substr(0, static_cast<std::size_t>(length)))
                             : String(text);
}

bool isPlain(std::u16string_view name)
{
    if (name.empty() || u_isdigit(name[0]))
        return false;
    return std::ranges::all_of(name,
        [](char16_t unit) { return unit == u'_' || u_isalpha(unit) || (unit < 0x80 && u_isdigit(unit)); });
}

// Keys are lower-case names, names between bars as they stand, and "|name" for a barred name that is also a
// term. Terms come first, so that a term's symbol is its row.
class SymbolTable {
public:
    SymbolTable()
    {
        for (const Term& term : terms)
            add(lowerCase(String::fromLatin1(term.spelling)), String::fromLatin1(term.spelling));
        for (std::size_t row = 0; row < TermCount; ++row) {
            if (terms[row].code)
                m_codes.try_emplace(terms[row].code, static_cast<Symbol>(row));
        }
    }

    Symbol intern(const String& key, std::u16string_view spelling)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_symbols.find(key.view());
        return found != m_symbols.end() ? found->second : add(key, String(spelling));
    }

    std::optional<Symbol> find(std::u16string_view key)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_symbols.find(key);
        return found != m_symbols.end() ? std::optional(found->second) : std::nullopt;
    }

    String spelling(Symbol symbol)
    {
        const std::lock_guard lock(m_mutex);
        return m_names[static_cast<std::size_t>(symbol)].spelling;
    }

    Symbol withCode(FourCharCode code) const
    {
        const auto found = m_codes.find(code);
        return found != m_codes.end() ? found->second : Symbol::None;
    }

private:
    struct Name {
        String key;
        String spelling;
    };

    Symbol add(const String& key, const String& spelling)
    {
        const auto symbol = static_cast<Symbol>(m_names.size());
        m_names.push_back({ key, spelling });
        m_symbols.try_emplace(m_names.back().key.view(), symbol);
        return symbol;
    }

    std::mutex m_mutex;
    std::deque<Name> m_names;
    std::unordered_map<std::u16string_view, Symbol> m_symbols;
    std::unordered_map<FourCharCode, Symbol> m_codes;
};

SymbolTable& table()
{
    static SymbolTable symbols;
    return symbols;
}

bool isTerm(Symbol symbol) { return symbol < Symbol::FirstUserSymbol; }

} // namespace

Symbol symbolOfPlainName(std::u16string_view name)
{
    const bool lower = std::ranges::all_of(
        name, [](char16_t unit) { return unit < 0x80 && !(unit >= u'A' && unit <= u'Z'); });
    if (lower) {
        if (const auto known = table().find(name))
            return *known;
    }
    return table().intern(lowerCase(name), name);
}

Symbol symbolOfUserName(std::u16string_view name)
{
    const auto same = table().find(name);
    const bool likeTerm = same && isTerm(*same);
    std::u16string key(likeTerm ? u"|" : u"");
    key.append(name);
    return table().intern(String(key), name);
}

std::optional<Symbol> existingSymbol(std::u16string_view lowerCaseName)
{
    return table().find(lowerCaseName);
}

String plainName(Symbol symbol) { return table().spelling(symbol); }

String sourceName(Symbol symbol)
{
    String spelling = plainName(symbol);
    if (isTerm(symbol))
        return spelling;
    const auto plain = table().find(lowerCase(spelling));
    if (isPlain(spelling) && plain == symbol)
        return spelling;
    std::u16string barred(u"|");
    barred.append(spelling.view()).append(u"|");
    return String(barred);
}

unsigned kindsOf(Symbol symbol) { return isTerm(symbol) ? terms[static_cast<std::size_t>(symbol)].kinds : 0; }

FourCharCode codeOf(Symbol symbol)
{
    return isTerm(symbol) ? terms[static_cast<std::size_t>(symbol)].code : 0;
}

Symbol termWithCode(FourCharCode code) { return table().withCode(code); }

Symbol canonicalClass(Symbol name)
{
    switch (name) {
    case Symbol::String:
    case Symbol::UnicodeText:
    case Symbol::InternationalText:
    case Symbol::StyledText:
    case Symbol::Utf8Text:
        return Symbol::Text;
    case Symbol::FileUrl:
        return Symbol::PosixFile;
    default:
        return name;
    }
}

} // namespace caddis::applescript
