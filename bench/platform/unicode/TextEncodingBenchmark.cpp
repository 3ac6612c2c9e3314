#include "platform/unicode/TextEncoding.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <unicode/ucnv.h>

namespace {

using caddis::CFStringEncoding;

constexpr std::size_t TextBytes = 1 << 20;

struct Input {
    const char* name;
    CFStringEncoding encoding;
    const char* icuName;
    const char* words[6];
};

const Input inputs[] = {
    { "windows-1252", CFStringEncoding::WindowsLatin1, "windows-1252",
        { "the ", "na\xEFve ", "caf\xE9 ", "opens ", "<p class=\"x\">", "\x84quoted\x93 " } },
    { "windows-1251", CFStringEncoding::WindowsCyrillic, "windows-1251",
        { "\xEA\xED\xE8\xE3\xE0 ", "\xE8 ", "\xEF\xEE\xEC\xEE\xF9\xED\xE8\xEA ", "<p>", "\xEF\xEE ",
            "\xF1\xEB\xEE\xE2\xE0\xEC " } },
    { "iso-8859-1", CFStringEncoding::ISOLatin1, "ISO-8859-1",
        { "the ", "na\xEFve ", "caf\xE9 ", "opens ", "<p class=\"x\">", "\xABquoted\xBB " } },
    { "shift_jis", CFStringEncoding::ShiftJIS, "Shift_JIS",
        { "\x93\xFA\x96\x7B\x8C\xEA", "<p>", "\x82\xCC", "\x96\x7B", "\x81\x42", "abc " } },
};

std::string text(const Input& input)
{
    std::minstd_rand random(5);
    std::string result;
    while (result.size() < TextBytes)
        result += input.words[random() % 6];
    return result;
}

void reportBytes(benchmark::State& state, std::size_t bytes)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void decodeCaddis(benchmark::State& state, const Input& input)
{
    const std::string bytes = text(input);
    for (auto _ : state)
        benchmark::DoNotOptimize(caddis::decodeText(bytes, input.encoding));
    reportBytes(state, bytes.size());
}

// One converter for all runs, and no string made of the units.
void decodeICU(benchmark::State& state, const Input& input)
{
    const std::string bytes = text(input);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open(input.icuName, &status);
    for (auto _ : state) {
        std::unique_ptr<UChar[]> units(new UChar[bytes.size()]);
        status = U_ZERO_ERROR;
        ucnv_toUChars(converter, units.get(), static_cast<int32_t>(bytes.size()), bytes.data(),
            static_cast<int32_t>(bytes.size()), &status);
        benchmark::DoNotOptimize(units.get());
    }
    ucnv_close(converter);
    reportBytes(state, bytes.size());
}

// Each byte read once and two written.
void decodeFloor(benchmark::State& state, const Input& input)
{
    const std::string bytes = text(input);
    for (auto _ : state) {
        std::unique_ptr<char[]> units(new char[2 * bytes.size()]);
        std::memcpy(units.get(), bytes.data(), bytes.size());
        std::memcpy(units.get() + bytes.size(), bytes.data(), bytes.size());
        benchmark::DoNotOptimize(units.get());
    }
    reportBytes(state, bytes.size());
}

const bool registered = [] {
    for (const Input& input : inputs) {
        const std::string subject = std::string("decodeText/") + input.name;
        benchmark::RegisterBenchmark((subject + "/caddis").c_str(), decodeCaddis, input);
        benchmark::RegisterBenchmark((subject + "/peer:icu").c_str(), decodeICU, input);
        benchmark::RegisterBenchmark((subject + "/floor:copy").c_str(), decodeFloor, input);
    }
    return true;
}();

} // namespace
