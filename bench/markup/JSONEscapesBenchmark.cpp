#include "markup/JSONEscapes.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace {

// Longer than the caches next to the core: what a text without anything to escape costs is reading it.
const caddis::String& plainText()
{
    static const caddis::String text(std::u16string(std::size_t { 4 } << 20, u'x'));
    return text;
}

template <typename Work> void measure(benchmark::State& state, Work work)
{
    const caddis::String& text = plainText();
    for (auto _ : state)
        benchmark::DoNotOptimize(work(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(2 * text.length()));
}

const void* absentByte(const caddis::String& text)
{
    return std::memchr(text.data(), '\\', 2 * text.length());
}

void decode(benchmark::State& state)
{
    measure(state, [](const auto& text) { return caddis::stringByConvertingJSONToCharacters(text); });
}
void encode(benchmark::State& state) { measure(state, caddis::stringByConvertingCharactersToJSON); }
void floorOf(benchmark::State& state) { measure(state, absentByte); }

BENCHMARK(decode)->Name("json/decode-plain/caddis");
BENCHMARK(floorOf)->Name("json/decode-plain/floor:memchr");
BENCHMARK(encode)->Name("json/encode-plain/caddis");
BENCHMARK(floorOf)->Name("json/encode-plain/floor:memchr");

} // namespace
