#include "platform/script/applescript/Symbols.h"

#include "platform/script/applescript/Heap.h"
#include "platform/script/applescript/NameTable.h"

#include <algorithm>
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

constexpr auto FirstNameOfScript = static_cast<Symbol>(1U << 31);

// Terms come first, so that a term's symbol is its row; then the other words of phrases.
struct Vocabulary {
    Vocabulary()
    {
        for (const Term& term : terms)
            names.add(lowerCase(String::fromLatin1(term.spelling)), String::fromLatin1(term.spelling));
        for (std::size_t row = 0; row < TermCount; ++row) {
            if (terms[row].code)
                codes.try_emplace(terms[row].code, static_cast<Symbol>(row));
        }
    }

    NameTable names { Symbol::None };
    std::unordered_map<FourCharCode, Symbol> codes;
};

Vocabulary& vocabulary()
{
    static Vocabulary words;
    return words;
}

// Keys are lower-case names, names between bars as they stand, and "|name" for a barred name that is also a
// term.
std::optional<Symbol> find(std::u16string_view key)
{
    const auto shared = vocabulary().names.find(key);
    return shared ? shared : Heap::current().names().find(key);
}

Symbol intern(const String& key, std::u16string_view spelling)
{
    const auto known = find(key);
    return known ? *known : Heap::current().addName(key, String(spelling));
}

bool isTerm(Symbol symbol) { return symbol < Symbol::FirstUserSymbol; }

} // namespace

Symbol NameTable::add(const String& key, const String& spelling)
{
    const auto symbol = static_cast<Symbol>(m_first + static_cast<std::uint32_t>(m_names.size()));
    m_names.push_back({ key, spelling });
    m_symbols.try_emplace(m_names.back().key.view(), symbol);
    return symbol;
}

std::unique_ptr<NameTable> makeNamesOfScript() { return std::make_unique<NameTable>(FirstNameOfScript); }

Symbol symbolOfPlainName(std::u16string_view name)
{
    const bool lower = std::ranges::all_of(
        name, [](char16_t unit) { return unit < 0x80 && !(unit >= u'A' && unit <= u'Z'); });
    if (lower) {
        if (const auto known = find(name))
            return *known;
    }
    return intern(lowerCase(name), name);
}

Symbol symbolOfUserName(std::u16string_view name)
{
    const auto same = find(name);
    const bool likeTerm = same && isTerm(*same);
    std::u16string key(likeTerm ? u"|" : u"");
    key.append(name);
    return intern(String(key), name);
}

Symbol symbolOfSharedWord(std::u16string_view word)
{
    NameTable& names = vocabulary().names;
    const String key = lowerCase(word);
    const auto known = names.find(key);
    return known ? *known : names.add(key, String(word));
}

std::optional<Symbol> existingSymbol(std::u16string_view lowerCaseName) { return find(lowerCaseName); }

String plainName(Symbol symbol)
{
    const bool isShared = symbol < FirstNameOfScript;
    return (isShared ? vocabulary().names : Heap::current().names()).spelling(symbol);
}

String sourceName(Symbol symbol)
{
    String spelling = plainName(symbol);
    if (isTerm(symbol))
        return spelling;
    const auto plain = find(lowerCase(spelling));
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

Symbol termWithCode(FourCharCode code)
{
    const auto found = vocabulary().codes.find(code);
    return found != vocabulary().codes.end() ? found->second : Symbol::None;
}

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
