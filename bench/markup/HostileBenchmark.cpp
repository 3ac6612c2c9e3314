// A megabyte of what hurts other readers, beside as much ordinary text: none may take three times its time.

#include "markup/Html2Text.h"
#include "markup/TagStripping.h"

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

namespace caddis::bench {

namespace {

// Each tag looks for its end behind all others, and then ends at the closing tag in its value.
constexpr const char* Returning = "returning-scripts";
constexpr std::size_t Units = std::size_t(1) << 20;

String repeated(std::u16string_view units, std::u16string_view behind = {})
{
    std::u16string text;
    while (text.size() < Units)
        text += units;
    return String(text.append(behind));
}

String ordinary()
{
    return repeated(u"<p class=\"x\">An ordinary line of <b>text</b> in a page,\nwith <a "
                    u"href=\"y.html\">links</a> &amp; more.</p>\n");
}

void run(benchmark::State& state, const String& text, bool strips)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(strips ? stripTags(text) : stringByConvertingHtml2PlainText(text));
}

const bool registered = [] {
    const std::pair<const char*, std::u16string_view> pages[] = { { "less", u"<" }, { "ampersands", u"&" },
        { "references", u"&amp&#x26" }, { "open-scripts", u"<script" }, { "scripts", u"<script>a" },
        { "quotes", u"\"" }, { "quote-tags", u"<a \"='>" }, { "nested", u"<div>" },
        { "hidden-nested", u"<div class=hidden>" }, { "comments", u"<!--" },
        { "commented-scripts", u"<script><!-- a</script>" }, { Returning, u"<script \"=\"</script>" },
        { "spaces", u" \n" } };
    for (const bool strips : { true, false }) {
        for (const auto& [name, units] : pages) {
            const std::string subject = std::string(strips ? "hostileStrip/" : "hostileText/") + name;
            benchmark::RegisterBenchmark((subject + "/caddis").c_str(),
                [text = repeated(units, name == Returning ? u"\">" : u""), strips](
                    auto& state) { run(state, text, strips); });
            benchmark::RegisterBenchmark((subject + "/floor:ordinary").c_str(),
                [text = ordinary(), strips](auto& state) { run(state, text, strips); });
        }
    }
    return true;
}();

} // namespace

} // namespace caddis::bench
