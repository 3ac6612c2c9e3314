// HTML bytes to plain text bytes, beside the trees that others would build for it.

#include "markup/Html2Text.h"
#include "markup/PageSets.h"

#include <cstring>
#include <gumbo.h>
#include <libxml/HTMLparser.h>
#include <libxml/tree.h>
#include <string_view>

namespace caddis::bench {

namespace {

void toPlainText(const PageSet& set)
{
    for (const std::string& page : set.bytes)
        benchmark::DoNotOptimize(stringByConvertingHtml2PlainText(String::fromUtf8(page)).utf8());
}

// Without the way from bytes and back.
void convert(const PageSet& set)
{
    for (const String& page : set.units)
        benchmark::DoNotOptimize(stringByConvertingHtml2PlainText(page));
}

bool isShown(std::string_view name) { return name != "script" && name != "style"; }

void walk(const xmlNode* node, std::string& text)
{
    for (; node; node = node->next) {
        if (node->type == XML_TEXT_NODE)
            text += reinterpret_cast<const char*>(node->content);
        else if (node->type == XML_ELEMENT_NODE && isShown(reinterpret_cast<const char*>(node->name)))
            walk(node->children, text);
    }
}

void walkLibxml2(const PageSet& set)
{
    for (const std::string& page : set.bytes) {
        std::string text;
        text.reserve(page.size());
        htmlDocPtr document = htmlReadMemory(page.data(), static_cast<int>(page.size()), nullptr, "UTF-8",
            HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_RECOVER | HTML_PARSE_NONET);
        walk(xmlDocGetRootElement(document), text);
        xmlFreeDoc(document);
        benchmark::DoNotOptimize(text.data());
    }
}

void walk(const GumboNode* node, std::string& text)
{
    if (node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE) {
        text += node->v.text.text;
    } else if (node->type == GUMBO_NODE_ELEMENT && node->v.element.tag != GUMBO_TAG_SCRIPT
        && node->v.element.tag != GUMBO_TAG_STYLE) {
        for (unsigned child = 0; child < node->v.element.children.length; ++child)
            walk(static_cast<const GumboNode*>(node->v.element.children.data[child]), text);
    }
}

void walkGumbo(const PageSet& set)
{
    for (const std::string& page : set.bytes) {
        std::string text;
        text.reserve(page.size());
        GumboOutput* document = gumbo_parse_with_options(&kGumboDefaultOptions, page.data(), page.size());
        walk(document->root, text);
        gumbo_destroy_output(&kGumboDefaultOptions, document);
        benchmark::DoNotOptimize(text.data());
    }
}

const bool registered = [] {
    registerReader("plainText", "caddis", toPlainText);
    registerReader("plainText", "floor:units-only", convert);
    registerReader("plainText", "peer:libxml2", walkLibxml2);
    registerReader("plainText", "peer:gumbo", walkGumbo);
    return true;
}();

} // namespace

} // namespace caddis::bench
