// The bare scan and the taking out of tags, beside the parsers that others would use for it.

#include "markup/PageSets.h"
#include "markup/TagScanner.h"
#include "markup/TagStripping.h"

#include <algorithm>
#include <expat.h>
#include <libxml/HTMLparser.h>

namespace caddis::bench {

namespace {

void scan(const PageSet& set)
{
    for (const String& page : set.units) {
        std::size_t tags = 0;
        std::size_t text = 0;
        GetTagsOfString(page, [&](const TagEvent& event) {
            ++tags;
            text += event.text.length;
            return Scan::Continue;
        });
        benchmark::DoNotOptimize(tags + text);
    }
}

void strip(const PageSet& set)
{
    for (const String& page : set.units)
        benchmark::DoNotOptimize(stripTags(page));
}

// Every unit is at least looked at once.
void countFloor(const PageSet& set)
{
    for (const String& page : set.units)
        benchmark::DoNotOptimize(std::ranges::count(page, u'<'));
}

void parseHTML(const PageSet& set, htmlSAXHandler& callbacks)
{
    for (const std::string& page : set.bytes) {
        std::string text;
        htmlParserCtxtPtr parser
            = htmlCreatePushParserCtxt(&callbacks, &text, nullptr, 0, nullptr, XML_CHAR_ENCODING_UTF8);
        htmlCtxtUseOptions(parser, HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING);
        htmlParseChunk(parser, page.data(), static_cast<int>(page.size()), 1);
        htmlFreeParserCtxt(parser);
        benchmark::DoNotOptimize(text.data());
    }
}

void scanLibxml2(const PageSet& set)
{
    htmlSAXHandler none {};
    parseHTML(set, none);
}

void stripLibxml2(const PageSet& set)
{
    htmlSAXHandler texts {};
    texts.characters = [](void* text, const xmlChar* units, int count) {
        static_cast<std::string*>(text)->append(
            reinterpret_cast<const char*>(units), static_cast<std::size_t>(count));
    };
    texts.ignorableWhitespace = texts.characters;
    parseHTML(set, texts);
}

void scanExpat(const PageSet& set)
{
    for (const std::string& page : set.bytes) {
        XML_Parser parser = XML_ParserCreate("UTF-8");
        XML_UseForeignDTD(parser, XML_TRUE);
        benchmark::DoNotOptimize(XML_Parse(parser, page.data(), static_cast<int>(page.size()), 1));
        XML_ParserFree(parser);
    }
}

const bool registered = [] {
    registerReader("scanTags", "caddis", scan);
    registerReader("scanTags", "peer:libxml2", scanLibxml2);
    registerXMLReader("scanTags", "peer:expat", scanExpat);
    registerReader("scanTags", "floor:count", countFloor);
    registerReader("stripTags", "caddis", strip);
    registerReader("stripTags", "peer:libxml2", stripLibxml2);
    return true;
}();

} // namespace

} // namespace caddis::bench
