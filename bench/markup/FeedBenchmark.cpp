// Feeds to pages, beside the XML parser that only cuts the same bytes into its events. Both get a feed that
// was generated from a fixed seed: some thousand units of HTML an item, in sections (RSS) or escaped (Atom).

#include "markup/Feed.h"

#include "markup/Entities.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <libxml/parser.h>
#include <random>

namespace {

using caddis::String;

struct Input {
    const char* name;
    unsigned items;
    std::size_t articleUnits;
    bool atom;
};

const Input Small { "rss-15", 15, 1500, false };
const Input Middle { "rss-100", 100, 5500, false };
const Input Large { "rss-2000", 2000, 5500, false }; // 11 MB
const Input Atom { "atom-30", 30, 6000, true };

std::string article(std::size_t units, unsigned seed)
{
    static const char* const pieces[] = { "the tide runs out ", "and <b>in</b> again, ", "<p class=\"text\">",
        "a boat &amp; its crew, ", "</p>\n", "see <a href=\"https://example.org/a?b=1\">the tables</a> ",
        "<img src=\"map.png\" alt=\"a map\"/> ", "no one knows why. ", "caf\xC3\xA9 " };
    std::minstd_rand random(seed);
    std::string result;
    while (result.size() < units)
        result += pieces[random() % std::size(pieces)];
    return result;
}

std::string number(unsigned value) { return std::to_string(value); }

std::string rssItem(const Input& input, unsigned index)
{
    return "<item><title>Tides &amp; tables " + number(index) + "</title><link>https://example.org/"
        + number(index) + ".html</link><guid isPermaLink=\"false\">" + number(index)
        + "</guid><pubDate>Mon, 06 Mar 2023 18:06:57 +0200</pubDate><dc:creator>A. Harbour</dc:creator>"
          "<category>Sea</category><enclosure url=\"https://example.org/a.mp3\" length=\"12345\" "
          "type=\"audio/mpeg\"/><description>In short.</description><content:encoded><![CDATA["
        + article(input.articleUnits, index + 1) + "]]></content:encoded></item>\n";
}

std::string atomEntry(const Input& input, unsigned index)
{
    const String html = String::fromUtf8(article(input.articleUnits * 4 / 5, index + 1));
    return "<entry><title type=\"html\">Tides " + number(index) + "</title><id>urn:x:" + number(index)
        + "</id><link href=\"https://example.org/" + number(index)
        + ".html\"/><updated>2023-03-06T18:06:57+02:00</updated><author><name>A. Harbour</name></author>"
          "<summary>In short.</summary><content type=\"html\">"
        + stringByConvertingCharactersToStandardEntities(html).utf8() + "</content></entry>\n";
}

std::string feed(const Input& input)
{
    std::string result = input.atom
        ? "<?xml version=\"1.0\" encoding=\"utf-8\"?><feed "
          "xmlns=\"http://www.w3.org/2005/Atom\"><title>T</title>\n"
        : "<?xml version=\"1.0\" encoding=\"utf-8\"?><rss version=\"2.0\" xmlns:dc=\"d\" xmlns:content=\"c\">"
          "<channel><title>T</title>\n";
    for (unsigned index = 0; index < input.items; ++index)
        result += input.atom ? atomEntry(input, index) : rssItem(input, index);
    return result + (input.atom ? "</feed>" : "</channel></rss>");
}

void pageCaddis(benchmark::State& state, const Input& input)
{
    const String text = String::fromUtf8(feed(input));
    for (auto _ : state)
        benchmark::DoNotOptimize(
            caddis::stringByConvertingFeedToDisplayHTMLUsingLinkedStyleSheet(text, true));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.length()));
}

void itemsCaddis(benchmark::State& state, const Input& input)
{
    const String text = String::fromUtf8(feed(input));
    for (auto _ : state)
        benchmark::DoNotOptimize(caddis::getItemsOfFeed(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.length()));
}

// Keeps the character data, which is less than any reader of feeds does.
void saxLibxml2(benchmark::State& state, const Input& input)
{
    const std::string bytes = feed(input);
    xmlSAXHandler handler {};
    handler.initialized = XML_SAX2_MAGIC;
    handler.characters = [](void* text, const xmlChar* units, int count) {
        static_cast<std::string*>(text)->append(
            reinterpret_cast<const char*>(units), static_cast<std::size_t>(count));
    };
    handler.cdataBlock = handler.characters;
    for (auto _ : state) {
        std::string text;
        text.reserve(bytes.size());
        if (xmlSAXUserParseMemory(&handler, &text, bytes.data(), static_cast<int>(bytes.size())) != 0)
            state.SkipWithError("not well-formed");
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

// The time of a feed of as many items, if time is linear.
void manySmaller(benchmark::State& state)
{
    const String text = String::fromUtf8(feed(Middle));
    for (auto _ : state) {
        for (unsigned items = 0; items < Large.items; items += Middle.items)
            benchmark::DoNotOptimize(
                caddis::stringByConvertingFeedToDisplayHTMLUsingLinkedStyleSheet(text, true));
    }
}

const bool registered = [] {
    for (const Input* input : { &Small, &Middle, &Large, &Atom }) {
        const std::string name = std::string("/") + input->name;
        benchmark::RegisterBenchmark(("feedToPage" + name + "/caddis").c_str(), pageCaddis, *input);
        benchmark::RegisterBenchmark(("feedToPage" + name + "/peer:libxml2").c_str(), saxLibxml2, *input);
        benchmark::RegisterBenchmark(("feedToItems" + name + "/caddis").c_str(), itemsCaddis, *input);
        benchmark::RegisterBenchmark(("feedToItems" + name + "/peer:libxml2").c_str(), saxLibxml2, *input);
    }
    benchmark::RegisterBenchmark("feedToPage/rss-2000/floor:smaller", manySmaller);
    return true;
}();

} // namespace
