#include "html/CSSStyleSheet.h"

#include <algorithm>

namespace caddis::css {

namespace {

constexpr std::size_t MostRules = 200'000;
constexpr int DeepestBlock = 16;
constexpr double ScreenWidth = 1024;
constexpr double ScreenHeight = 768;

class SheetParser {
public:
    explicit SheetParser(StyleSheet& sheet)
        : m_sheet(sheet)
    {
    }

    void parse(std::u16string_view text, int depth, bool isLayered);

private:
    void parseAtRule(Tokenizer& tokens, const Token& keyword, int depth, bool isLayered);
    void addRule(std::u16string_view prelude, std::u16string_view block, bool isLayered);
    void addImport(std::u16string_view prelude);

    StyleSheet& m_sheet;
};

// Takes tokens up to `{` or `;`, which is given, with what stands before it.
Token takePrelude(Tokenizer& tokens, Token token, std::u16string_view& prelude)
{
    const std::size_t begin = token.begin;
    while (!token.is(TokenType::End) && !token.is(TokenType::OpenBrace) && !token.is(TokenType::Semicolon)) {
        if (opensBlock(token.type))
            tokens.skipBlock(token.type);
        token = tokens.next();
    }
    prelude = trimmed(tokens.between(begin, token.begin));
    return token;
}

void SheetParser::parse(std::u16string_view text, int depth, bool isLayered)
{
    Tokenizer tokens(text);
    for (Token token = tokens.nextSolid(); !token.is(TokenType::End); token = tokens.nextSolid()) {
        if (token.is(TokenType::AtKeyword)) {
            parseAtRule(tokens, token, depth, isLayered);
            continue;
        }
        if (token.is(TokenType::CloseBrace))
            continue;
        std::u16string_view prelude;
        const Token end = takePrelude(tokens, token, prelude);
        if (end.is(TokenType::OpenBrace))
            addRule(prelude, tokens.skipBlock(TokenType::OpenBrace), isLayered);
    }
}

void SheetParser::parseAtRule(Tokenizer& tokens, const Token& keyword, int depth, bool isLayered)
{
    std::u16string_view prelude;
    const Token end = takePrelude(tokens, tokens.nextSolid(), prelude);
    if (!end.is(TokenType::OpenBrace)) {
        if (equalsIgnoringCase(keyword.text, u"import"))
            addImport(prelude);
        return;
    }
    const std::u16string_view block = tokens.skipBlock(TokenType::OpenBrace);
    const bool isLayer = equalsIgnoringCase(keyword.text, u"layer");
    const bool applies = isLayer || (equalsIgnoringCase(keyword.text, u"media") && mediaApply(prelude))
        || (equalsIgnoringCase(keyword.text, u"supports")
            && !lowered(prelude.substr(0, 3)).starts_with(u"not"));
    if (applies && depth < DeepestBlock)
        parse(block, depth + 1, isLayered || isLayer);
}

void SheetParser::addRule(std::u16string_view prelude, std::u16string_view block, bool isLayered)
{
    if (m_sheet.rules.size() >= MostRules)
        return;
    const auto first = static_cast<std::uint32_t>(m_sheet.declarations.size());
    parseDeclarations(block, m_sheet.declarations);
    const auto count = static_cast<std::uint32_t>(m_sheet.declarations.size()) - first;
    if (count == 0)
        return;
    auto selectors = parseSelectors(prelude);
    if (!selectors)
        return m_sheet.declarations.resize(first);
    const auto number = static_cast<std::uint32_t>(m_sheet.blocks.size());
    m_sheet.blocks.push_back({ first, count });
    for (Selector& selector : *selectors)
        m_sheet.rules.push_back({ std::move(selector), number, isLayered });
}

// url(…) or "…", perhaps "layer" or "supports(…)", then media.
void SheetParser::addImport(std::u16string_view prelude)
{
    Tokenizer tokens(prelude);
    Token token = tokens.nextSolid();
    std::u16string_view address = token.text;
    if (token.is(TokenType::Function)) {
        Tokenizer inside(tokens.skipBlock(TokenType::Function));
        address = inside.nextSolid().text;
    } else if (!token.is(TokenType::Url) && !token.is(TokenType::String)) {
        return;
    }
    token = tokens.nextSolid();
    while (token.isIdent(u"layer") || token.is(TokenType::Function)) {
        if (token.is(TokenType::Function))
            tokens.skipBlock(TokenType::Function);
        token = tokens.nextSolid();
    }
    if (mediaApply(prelude.substr(std::min(token.begin, prelude.size()))))
        m_sheet.imports.emplace_back(unescaped(address));
}

// A feature in its parentheses: "min-width: 40em", "width >= 600px", "prefers-color-scheme: dark".
bool featureApplies(std::u16string_view feature)
{
    Tokenizer tokens(feature);
    const std::u16string name = lowered(tokens.nextSolid().text);
    const Token colon = tokens.nextSolid();
    const auto value = numberOf(tokens.nextSolid());
    const bool isHeight = name.ends_with(u"height");
    const double screen = isHeight ? ScreenHeight : ScreenWidth;
    if (value && colon.is(TokenType::Colon) && (isHeight || name.ends_with(u"width"))) {
        const bool isFontRelative
            = value->kind == PropertyValue::Kind::Em || value->kind == PropertyValue::Kind::RootEm;
        const double limit = value->number * (isFontRelative ? 16 : 1);
        return name.starts_with(u"min-") ? screen >= limit : !name.starts_with(u"max-") || screen <= limit;
    }
    const std::u16string rest = lowered(feature);
    return rest.find(u"dark") == rest.npos && rest.find(u"reduce") == rest.npos
        && rest.find(u"portrait") == rest.npos && rest.find(u"none") == rest.npos;
}

bool queryApplies(Tokenizer& tokens, Token& token)
{
    bool applies = true;
    bool isNegated = false;
    for (; !token.is(TokenType::End) && !token.is(TokenType::Comma); token = tokens.nextSolid()) {
        if (token.isIdent(u"not"))
            isNegated = true;
        else if (token.is(TokenType::OpenParenthesis))
            applies = featureApplies(tokens.skipBlock(token.type)) && applies;
        else if (opensBlock(token.type))
            tokens.skipBlock(token.type);
        else if (token.is(TokenType::Ident) && !token.isIdent(u"and") && !token.isIdent(u"only"))
            applies = applies && (token.isIdent(u"screen") || token.isIdent(u"all"));
    }
    return applies != isNegated;
}

} // namespace

bool mediaApply(std::u16string_view queries)
{
    Tokenizer tokens(queries);
    Token token = tokens.nextSolid();
    if (token.is(TokenType::End))
        return true;
    while (true) {
        if (queryApplies(tokens, token))
            return true;
        if (token.is(TokenType::End))
            return false;
        token = tokens.nextSolid();
    }
}

StyleSheet parseStyleSheet(const String& source)
{
    StyleSheet sheet { .source = source };
    SheetParser(sheet).parse(source, 0, false);
    return sheet;
}

} // namespace caddis::css
