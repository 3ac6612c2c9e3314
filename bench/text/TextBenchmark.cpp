#include "text/FastComparison.h"
#include "text/Folding.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <vector>

namespace {

using caddis::String;

constexpr std::size_t TextUnits = 1 << 20;

// Words of an ordinary page, some with accents, from a fixed seed; what is searched stands only at the end.
String page()
{
    static const char16_t* const words[]
        = { u"the ", u"Script ", u"answers ", u"na\u00EFve ", u"title.\n", u"<style> ", u"\u00C4rger " };
    std::minstd_rand random(3);
    std::u16string text;
    while (text.size() < TextUnits)
        text += words[random() % std::size(words)];
    return String(text + u"</sCrIpT> ");
}

constexpr std::u16string_view Needle = u"</SCRIPT";
constexpr std::u16string_view ExactNeedle = u"</sCrIpT";

void report(benchmark::State& state, std::size_t units)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(units * sizeof(char16_t)));
}

template <typename Work> void measure(benchmark::State& state, Work work)
{
    const String text = page();
    for (auto _ : state)
        benchmark::DoNotOptimize(work(text));
    report(state, text.length());
}

// What a search without case does with the case functions of a library.
std::size_t searchFoldingWithICU(const String& text)
{
    const auto isEqual = [](char16_t left, char16_t right) {
        return u_foldCase(left, U_FOLD_CASE_DEFAULT) == u_foldCase(right, U_FOLD_CASE_DEFAULT);
    };
    return static_cast<std::size_t>(
        std::search(text.begin(), text.end(), Needle.begin(), Needle.end(), isEqual) - text.begin());
}

// Decompose and drop what is not a letter's base.
std::u16string foldWithICU(const String& text)
{
    UErrorCode status = U_ZERO_ERROR;
    std::u16string parts(text.length() * 2, u'\0');
    parts.resize(static_cast<std::size_t>(unorm2_normalize(unorm2_getNFDInstance(&status), text.data(),
        static_cast<int32_t>(text.length()), parts.data(), static_cast<int32_t>(parts.size()), &status)));
    std::erase_if(parts, [](char16_t unit) { return u_charType(unit) == U_NON_SPACING_MARK; });
    return parts;
}

int32_t compareWithICU(const String& left, const String& right)
{
    return u_strncasecmp(left.data(), right.data(), static_cast<int32_t>(left.length()), U_FOLD_CASE_DEFAULT);
}

void compareCaddis(benchmark::State& state)
{
    const String left = page();
    const String right = caddis::lowercaseNonUmlautedString(left);
    const String folded = caddis::uppercaseNonUmlautedString(left);
    for (auto _ : state)
        benchmark::DoNotOptimize(caddis::fastCaseInsensitiveCompareUnichars(right, folded));
    report(state, left.length());
}

void compareICU(benchmark::State& state)
{
    const String left = page();
    const String right = caddis::lowercaseNonUmlautedString(left);
    const String folded = caddis::uppercaseNonUmlautedString(left);
    for (auto _ : state)
        benchmark::DoNotOptimize(compareWithICU(right, folded));
    report(state, left.length());
}

const bool registered = [] {
    const auto add = [](const char* name, auto work) {
        benchmark::RegisterBenchmark(name, [work](benchmark::State& state) { measure(state, work); });
    };
    add("search/exact/caddis",
        [](const String& text) { return caddis::fastContainsUnichars(text, ExactNeedle); });
    add("search/exact/peer:find", [](const String& text) { return text.view().find(ExactNeedle); });
    add("search/no-case/caddis",
        [](const String& text) { return caddis::fastCaseInsensitiveContainsUnichars(text, Needle); });
    add("search/no-case/peer:icu", searchFoldingWithICU);
    add("fold/page/caddis", caddis::nonUmlautedNormalizedString);
    add("fold/page/peer:icu", foldWithICU);
    benchmark::RegisterBenchmark("compare/no-case/caddis", compareCaddis);
    benchmark::RegisterBenchmark("compare/no-case/peer:icu", compareICU);
    return true;
}();

} // namespace
