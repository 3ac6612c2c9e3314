#include "bundles/PlainText/FrontMatter.h"

#include "bundles/support/Properties.h"
#include "bundles/support/Utf8.h"

namespace caddis::bundles {

namespace {

constexpr Property Keys[] = {
    { "title", "kMDItemTitle" },
    { "author", "kMDItemAuthors", Form::Strings },
    { "authors", "kMDItemAuthors", Form::Strings },
    { "subtitle", "kMDItemHeadline" },
    { "description", "kMDItemDescription" },
    { "summary", "kMDItemDescription" },
    { "tags", "kMDItemKeywords", Form::Parts },
    { "keywords", "kMDItemKeywords", Form::Parts },
    { "categories", "kMDItemKeywords", Form::Parts },
    { "subject", "kMDItemSubject" },
    { "lang", "kMDItemLanguages", Form::Strings },
    { "language", "kMDItemLanguages", Form::Strings },
    { "copyright", "kMDItemCopyright" },
    { "date", "kMDItemContentCreationDate", Form::Date },
};

std::string_view withoutQuotes(std::string_view text)
{
    text = trimmed(text);
    if (text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\''))
        text = text.substr(1, text.size() - 2);
    return text;
}

void setList(const Property& property, std::string_view list, Attributes& attributes)
{
    while (!list.empty())
        setProperty(attributes, property.key, property.form, withoutQuotes(takeUntil(list, ',')));
}

void setValue(const Property& property, std::string_view value, Attributes& attributes)
{
    if (value.size() >= 2 && value.front() == '[' && value.back() == ']')
        setList(property, value.substr(1, value.size() - 2), attributes);
    else
        setProperty(attributes, property.key, property.form, withoutQuotes(value));
}

const Property* propertyNamed(std::string_view name)
{
    for (const Property& property : Keys) {
        if (equalsNoCase(property.element, name))
            return &property;
    }
    return nullptr;
}

void readYaml(std::string_view head, Attributes& attributes)
{
    const Property* current = nullptr;
    while (!head.empty()) {
        const std::string_view line = takeUntil(head, '\n');
        const std::string_view plain = trimmed(line);
        if (plain.starts_with("- ")) {
            if (current)
                setValue(*current, trimmed(plain.substr(2)), attributes);
        } else if (const auto colon = line.find(':'); colon != line.npos && line.front() != ' ') {
            current = propertyNamed(trimmed(line.substr(0, colon)));
            if (current)
                setValue(*current, trimmed(line.substr(colon + 1)), attributes);
        }
    }
}

void setFirstHeading(std::string_view text, Attributes& attributes)
{
    // A file without a heading near its top has no title, however long it is.
    for (int line = 0; line < 100 && !text.empty(); ++line) {
        const std::string_view candidate = takeUntil(text, '\n');
        if (candidate.starts_with("# ")) {
            const std::string_view title = trimmed(candidate.substr(2));
            return attributes.setString("kMDItemTitle", title.substr(0, title.find_last_not_of("# ") + 1));
        }
    }
}

} // namespace

std::string_view readFrontMatter(std::string_view markdown, Attributes& attributes)
{
    std::string_view head;
    std::string_view body = markdown;
    if (markdown.starts_with("---") && trimmed(takeUntil(body, '\n')) == "---") {
        const std::string_view afterMark = body;
        std::string_view line;
        while (!body.empty() && line != "---" && line != "...") {
            head = afterMark.substr(0, afterMark.size() - body.size());
            line = trimmed(takeUntil(body, '\n'));
        }
        if (line != "---" && line != "...") {
            head = {};
            body = markdown;
        }
    }
    setFirstHeading(body, attributes);
    readYaml(head, attributes);
    return body;
}

} // namespace caddis::bundles
