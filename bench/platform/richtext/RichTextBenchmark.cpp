// Rich text, beside one pass over the same bytes that looks at each (RTF), and one copy of them
// (attachments).

#include "platform/richtext/AttributedStringBuilder.h"
#include "platform/richtext/RTF.h"
#include "platform/richtext/RTFD.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace {

using namespace caddis;

constexpr std::size_t DocumentBytes = 5'000'000;
constexpr std::size_t AttachedBytes = 100'000'000;

// 150,000 runs in 7 kinds of paragraph, with bytes of a code page and Unicode.
const std::string& styledDocument()
{
    static const std::string document = [] {
        std::string rtf
            = "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl\\f0\\fswiss\\fcharset0 Helvetica;\\f1\\fnil\\fcharset0 "
              "Menlo;}{\\colortbl;\\red255\\green255\\blue255;\\red200\\green0\\blue0;}\n";
        for (int line = 0; rtf.size() < DocumentBytes; ++line)
            rtf += "\\pard\\tx560\\tx1120\\li" + std::to_string(line % 7 * 100)
                + " \\f0\\b\\fs24 Some bold words\\b0  and plain ones with caf\\'e9 {\\i\\cf2 italic words "
                  "here}"
                  "\\u8226 ? more plain text in the line\\\n";
        return rtf + '}';
    }();
    return document;
}

void reportBytes(benchmark::State& state, std::size_t bytes)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void readRTF(benchmark::State& state)
{
    const Data rtf = Data::copyOf(styledDocument());
    for (auto _ : state)
        benchmark::DoNotOptimize(attributedStringWithRTF(rtf));
    reportBytes(state, rtf.size());
}

void writeRTF(benchmark::State& state)
{
    const auto text = attributedStringWithRTF(Data::copyOf(styledDocument()));
    std::size_t written = 0;
    for (auto _ : state) {
        const Data rtf = RTFFromString(*text, text->documentAttributes);
        benchmark::DoNotOptimize(rtf.bytes());
        written = rtf.size();
    }
    reportBytes(state, written);
}

void lookAtEachByte(benchmark::State& state)
{
    const std::string& rtf = styledDocument();
    for (auto _ : state) {
        std::size_t words = 0;
        for (const char byte : rtf) {
            words += byte == '\\' ? 1 : 0;
            benchmark::DoNotOptimize(words);
        }
    }
    reportBytes(state, rtf.size());
}

void flatRTFD(benchmark::State& state)
{
    AttributedStringBuilder builder;
    for (int count = 0; count < 10; ++count)
        builder.appendAttachment(
            { FileWrapper::file(String(u"a.bin"), Data::adopt(std::string(AttachedBytes / 10, 'x'))), {} },
            {});
    const AttributedString text = std::move(builder).finish();
    for (auto _ : state) {
        const auto rtfd = RTFDFromString(text, {});
        benchmark::DoNotOptimize(initWithRTFD(*rtfd));
    }
    reportBytes(state, AttachedBytes);
}

void copyOnce(benchmark::State& state)
{
    const std::string source(AttachedBytes, 'x');
    for (auto _ : state) {
        const std::string copy = source;
        benchmark::DoNotOptimize(copy.data());
    }
    reportBytes(state, AttachedBytes);
}

BENCHMARK(readRTF)->Name("rtfRead/styled-5MB/caddis")->Unit(benchmark::kMillisecond);
BENCHMARK(lookAtEachByte)->Name("rtfRead/styled-5MB/floor:bytes")->Unit(benchmark::kMillisecond);
BENCHMARK(writeRTF)->Name("rtfWrite/styled-5MB/caddis")->Unit(benchmark::kMillisecond);
BENCHMARK(lookAtEachByte)->Name("rtfWrite/styled-5MB/floor:bytes")->Unit(benchmark::kMillisecond);
BENCHMARK(flatRTFD)->Name("flatRTFD/100MB/caddis")->Unit(benchmark::kMillisecond);
BENCHMARK(copyOnce)->Name("flatRTFD/100MB/floor:copy")->Unit(benchmark::kMillisecond);

} // namespace
