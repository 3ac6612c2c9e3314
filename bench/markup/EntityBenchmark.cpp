#include "markup/Entities.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <libxml/HTMLparser.h>
#include <memory>
#include <random>
#include <string>

namespace {

using caddis::String;

constexpr std::size_t TextUnits = 1 << 20;

// Running text in which one piece in `period` is a reference, from a fixed seed.
std::string running(unsigned period)
{
    static const char* const words[] = { "the ", "quick ", "helper ", "answers ", "a book.\n", "again, " };
    static const char* const references[]
        = { "&amp; ", "&nbsp;", "caf&eacute; ", "&#8211; ", "&lt;b&gt; ", "&rarr; " };
    std::minstd_rand random(9);
    std::string result;
    while (result.size() < TextUnits)
        result += random() % period ? words[random() % 6] : references[random() % 6];
    return result;
}

std::string input(const std::string& name)
{
    return name == "page" ? running(20) : name == "dense" ? running(2) : std::string(TextUnits, '&');
}

void reportUnits(benchmark::State& state, std::size_t units)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(units));
}

void decodeCaddis(benchmark::State& state, const std::string& name)
{
    const String text = String::fromUtf8(input(name));
    for (auto _ : state)
        benchmark::DoNotOptimize(stringByConvertingEntitiesToCharacters(text));
    reportUnits(state, text.length());
}

// The text read and written once.
void decodeFloor(benchmark::State& state, const std::string& name)
{
    const String text = String::fromUtf8(input(name));
    for (auto _ : state) {
        std::unique_ptr<char16_t[]> copy(new char16_t[text.length()]);
        std::memcpy(copy.get(), text.data(), text.length() * sizeof(char16_t));
        benchmark::DoNotOptimize(copy.get());
    }
    reportUnits(state, text.length());
}

// The HTML parser's text calls: the nearest thing to a decoder in that library. It reads and writes UTF-8.
void decodeLibxml2(benchmark::State& state, const std::string& name)
{
    const std::string text = input(name);
    std::string result;
    htmlSAXHandler handler {};
    handler.characters = [](void* context, const xmlChar* characters, int length) {
        static_cast<std::string*>(context)->append(
            reinterpret_cast<const char*>(characters), static_cast<std::size_t>(length));
    };
    for (auto _ : state) {
        result.clear();
        htmlParserCtxtPtr parser
            = htmlCreatePushParserCtxt(&handler, &result, nullptr, 0, nullptr, XML_CHAR_ENCODING_UTF8);
        htmlCtxtUseOptions(parser, HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NOIMPLIED);
        htmlParseChunk(parser, text.data(), static_cast<int>(text.size()), 1);
        htmlFreeParserCtxt(parser);
        benchmark::DoNotOptimize(result.data());
    }
    reportUnits(state, text.size());
}

// Markup signs in every fourth piece.
void encodeCaddis(benchmark::State& state)
{
    const String text = stringByConvertingEntitiesToCharacters(String::fromUtf8(running(4)));
    for (auto _ : state)
        benchmark::DoNotOptimize(stringByConvertingCharactersToStandardEntities(text));
    reportUnits(state, text.length());
}

void encodeLibxml2(benchmark::State& state)
{
    const std::string text = stringByConvertingEntitiesToCharacters(String::fromUtf8(running(4))).utf8();
    for (auto _ : state) {
        xmlChar* escaped = xmlEncodeSpecialChars(nullptr, reinterpret_cast<const xmlChar*>(text.c_str()));
        benchmark::DoNotOptimize(escaped);
        xmlFree(escaped);
    }
    reportUnits(state, text.size());
}

const bool registered = [] {
    for (const std::string name : { "page", "dense" }) {
        const std::string subject = "decodeEntities/" + name;
        benchmark::RegisterBenchmark((subject + "/caddis").c_str(), decodeCaddis, name);
        benchmark::RegisterBenchmark((subject + "/peer:libxml2").c_str(), decodeLibxml2, name);
        benchmark::RegisterBenchmark((subject + "/floor:copy").c_str(), decodeFloor, name);
    }
    // Hostile text beside as much text full of references.
    benchmark::RegisterBenchmark("decodeEntities/ampersands/caddis", decodeCaddis, "ampersands");
    benchmark::RegisterBenchmark("decodeEntities/ampersands/floor:dense", decodeCaddis, "dense");
    benchmark::RegisterBenchmark("encodeEntities/standard/caddis", encodeCaddis);
    benchmark::RegisterBenchmark("encodeEntities/standard/peer:libxml2", encodeLibxml2);
    return true;
}();

} // namespace
