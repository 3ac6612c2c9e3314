#include "platform/base/String.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <random>
#include <unicode/ustring.h>
#include <vector>

namespace {

constexpr std::size_t TextBytes = 1 << 20;

// One in `period` pieces is not ASCII, from a fixed seed.
std::string text(unsigned period)
{
    static const char* const words[] = { "the ", "helper ", "answers ", "a ", "book.\n", "<p class=\"x\">" };
    static const char* const foreign[] = { "na\xC3\xAFve ", "\xE6\xBC\xA2\xE5\xAD\x97", "\xF0\x9F\x98\x80 " };
    std::minstd_rand random(3);
    std::string result;
    while (result.size() < TextBytes)
        result += random() % period ? words[random() % 6] : foreign[random() % 3];
    return result;
}

void reportBytes(benchmark::State& state, std::size_t bytes)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void decodeCaddis(benchmark::State& state, unsigned period)
{
    const std::string bytes = text(period);
    for (auto _ : state)
        benchmark::DoNotOptimize(caddis::String::fromUtf8(bytes));
    reportBytes(state, bytes.size());
}

void decodeICU(benchmark::State& state, unsigned period)
{
    const std::string bytes = text(period);
    for (auto _ : state) {
        std::vector<char16_t> units(bytes.size());
        int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strFromUTF8WithSub(units.data(), static_cast<int32_t>(units.size()), &length, bytes.data(),
            static_cast<int32_t>(bytes.size()), 0xFFFD, nullptr, &status);
        benchmark::DoNotOptimize(units.data());
    }
    reportBytes(state, bytes.size());
}

void encodeCaddis(benchmark::State& state, unsigned period)
{
    const caddis::String units = caddis::String::fromUtf8(text(period));
    for (auto _ : state)
        benchmark::DoNotOptimize(units.utf8());
    reportBytes(state, 2 * units.length());
}

void encodeICU(benchmark::State& state, unsigned period)
{
    const caddis::String units = caddis::String::fromUtf8(text(period));
    for (auto _ : state) {
        std::vector<char> bytes(3 * units.length());
        int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strToUTF8WithSub(bytes.data(), static_cast<int32_t>(bytes.size()), &length, units.data(),
            static_cast<int32_t>(units.length()), 0xFFFD, nullptr, &status);
        benchmark::DoNotOptimize(bytes.data());
    }
    reportBytes(state, 2 * units.length());
}

// Each byte read once and two written: no decoder can do with less.
void decodeFloor(benchmark::State& state, unsigned period)
{
    const std::string bytes = text(period);
    for (auto _ : state) {
        std::unique_ptr<char[]> units(new char[2 * bytes.size()]);
        std::memcpy(units.get(), bytes.data(), bytes.size());
        std::memcpy(units.get() + bytes.size(), bytes.data(), bytes.size());
        benchmark::DoNotOptimize(units.get());
    }
    reportBytes(state, bytes.size());
}

const bool registered = [] {
    const std::pair<const char*, unsigned> inputs[] = { { "mostly-ascii", 40 }, { "mixed", 2 } };
    for (const auto& [name, period] : inputs) {
        const std::string subject = std::string("utf8ToUtf16/") + name;
        const std::string inverse = std::string("utf16ToUtf8/") + name;
        benchmark::RegisterBenchmark((inverse + "/caddis").c_str(), encodeCaddis, period);
        benchmark::RegisterBenchmark((inverse + "/peer:icu").c_str(), encodeICU, period);
        benchmark::RegisterBenchmark((subject + "/caddis").c_str(), decodeCaddis, period);
        benchmark::RegisterBenchmark((subject + "/peer:icu").c_str(), decodeICU, period);
        benchmark::RegisterBenchmark((subject + "/floor:copy").c_str(), decodeFloor, period);
    }
    return true;
}();

} // namespace
