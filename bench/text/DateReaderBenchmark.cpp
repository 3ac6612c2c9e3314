#include "text/DateReader.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <curl/curl.h>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

const Texts RFC822 { "Sun, 06 Nov 1994 08:49:37 GMT", "Mon, 15 Aug 2005 15:52:01 +0000",
    "Tue, 07 Mar 2023 18:06:57 +0200", "Sat, 1 Jan 2000 00:00:00 -0500", "Wed, 03 Sep 2008 17:03:03 EST" };
// Without a weekday no format of the rules fits: the natural-language reader reads it.
const Texts NoWeekday { "06 Nov 1994 08:49:37 GMT", "15 Aug 2005 15:52:01 +0000",
    "07 Mar 2023 18:06:57 +0200" };
const Texts ISO8601 { "2023-03-06T18:06:57Z", "2003-12-13T18:30:02+01:00", "2024-02-29T23:59:59.123Z",
    "2012-01-01T00:00:00-08:00", "1999-12-31T23:59:59Z" };

void count(benchmark::State& state, const Texts& texts)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.size()));
}

void readCaddis(benchmark::State& state, const Texts& texts)
{
    std::vector<caddis::String> strings;
    for (const std::string& text : texts)
        strings.push_back(caddis::String::fromUtf8(text));
    for (auto _ : state) {
        for (const caddis::String& string : strings) {
            const auto date = caddis::date(string);
            if (!date)
                state.SkipWithError("not read");
            benchmark::DoNotOptimize(date);
        }
    }
    count(state, texts);
}

void readCurl(benchmark::State& state, const Texts& texts)
{
    for (auto _ : state) {
        for (const std::string& text : texts)
            benchmark::DoNotOptimize(curl_getdate(text.c_str(), nullptr));
    }
    count(state, texts);
}

// Ignores the zone: less than every reader has to do.
void readStrptime(benchmark::State& state, const Texts& texts, const char* format)
{
    for (auto _ : state) {
        for (const std::string& text : texts) {
            std::tm time {};
            benchmark::DoNotOptimize(strptime(text.c_str(), format, &time));
            benchmark::DoNotOptimize(timegm(&time));
        }
    }
    count(state, texts);
}

const bool registered = [] {
    struct Input {
        const char* name;
        const Texts& texts;
        const char* format;
    };
    for (const auto& [name, texts, format] : {
             Input { "rfc822", RFC822, "%a, %d %b %Y %H:%M:%S" },
             Input { "no-weekday", NoWeekday, "%d %b %Y %H:%M:%S" },
             Input { "iso8601", ISO8601, "%Y-%m-%dT%H:%M:%S" },
         }) {
        const std::string subject = std::string("date/") + name;
        benchmark::RegisterBenchmark((subject + "/caddis").c_str(), readCaddis, texts);
        benchmark::RegisterBenchmark((subject + "/peer:curl").c_str(), readCurl, texts);
        benchmark::RegisterBenchmark((subject + "/peer:strptime").c_str(), readStrptime, texts, format);
    }
    return true;
}();

} // namespace
