// HTML to flat RTFD, beside libxml2's bare parse of the same bytes. The pages are 130 of the installed
// documentation, evenly picked; "median-page" is the page in the middle when each is timed by itself, in the
// thread's own time.

#include "html/HTMLImport.h"
#include "platform/files/MappedFile.h"
#include "platform/richtext/RTFD.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <filesystem>
#include <libxml/HTMLparser.h>
#include <string>
#include <vector>

namespace caddis {
namespace {

struct DocumentationPage {
    std::string path;
    Data bytes;
};

std::vector<DocumentationPage> readPages()
{
    constexpr std::size_t Wanted = 130;
    std::vector<std::string> paths;
    std::error_code missing;
    for (const char* folder : { "/usr/share/doc/postgresql-doc-15/html", "/usr/share/doc/python3.11/html" }) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, missing)) {
            if (entry.path().extension() == ".html")
                paths.push_back(entry.path().string());
        }
    }
    std::ranges::sort(paths);
    std::vector<DocumentationPage> pages;
    for (std::size_t index = 0; index < Wanted && !paths.empty(); ++index) {
        const std::string& path = paths[index * paths.size() / Wanted];
        if (const auto data = MappedFile::open(String::fromUtf8(path)))
            pages.push_back({ path, *data });
    }
    return pages;
}

const std::vector<DocumentationPage>& pages()
{
    static const auto all = readPages();
    return all;
}

void import(const DocumentationPage& page)
{
    HTMLImportOptions options;
    options.baseURL = URL::fileURLWithPath(String::fromUtf8(page.path));
    benchmark::DoNotOptimize(RTFDFromString(attributedStringWithHTML(page.bytes, options), {}));
}

void parse(std::string_view bytes)
{
    htmlParserCtxtPtr context = htmlNewParserCtxt();
    htmlDocPtr document = htmlCtxtReadMemory(context, bytes.data(), static_cast<int>(bytes.size()), nullptr,
        "UTF-8", HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET);
    benchmark::DoNotOptimize(document);
    xmlFreeDoc(document);
    htmlFreeParserCtxt(context);
}

// Without the limit on depth, behind which the rest of a page would be lost.
void parseDeep(std::string_view bytes)
{
    htmlParserCtxtPtr context = htmlCreateMemoryParserCtxt(bytes.data(), static_cast<int>(bytes.size()));
    htmlCtxtUseOptions(context, HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_IGNORE_ENC);
    context->options |= XML_PARSE_HUGE;
    htmlParseDocument(context);
    xmlFreeDoc(context->myDoc);
    htmlFreeParserCtxt(context);
}

void allPages(benchmark::State& state, void (*read)(const DocumentationPage&))
{
    if (pages().empty())
        return state.SkipWithError("no documentation is installed");
    for (auto _ : state)
        std::ranges::for_each(pages(), read);
}

double threadSeconds()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void medianPage(benchmark::State& state)
{
    if (pages().empty())
        return state.SkipWithError("no documentation is installed");
    for (auto _ : state) {
        std::vector<double> seconds;
        for (const DocumentationPage& page : pages()) {
            const double start = threadSeconds();
            import(page);
            seconds.push_back(threadSeconds() - start);
        }
        std::ranges::nth_element(seconds, seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2));
        state.SetIterationTime(seconds[seconds.size() / 2]);
    }
}

std::string repeated(std::string_view text, std::size_t times)
{
    std::string result;
    while (times-- > 0)
        result += text;
    return result;
}

const std::string& nested()
{
    static const std::string page = repeated("<div>x", 100'000);
    return page;
}

BENCHMARK_CAPTURE(allPages, caddis, import)
    ->Name("htmlImport/130-pages/caddis")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(allPages, libxml2, [](const DocumentationPage& page) { parse(page.bytes.chars()); })
    ->Name("htmlImport/130-pages/floor:libxml2")
    ->Unit(benchmark::kMillisecond);
// An iteration counts one page and reads them all.
BENCHMARK(medianPage)
    ->Name("htmlImport/median-page/caddis")
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void deepPage(benchmark::State& state)
{
    const Data page = Data::copyOf(nested());
    for (auto _ : state)
        benchmark::DoNotOptimize(RTFDFromString(attributedStringWithHTML(page), {}));
}
BENCHMARK(deepPage)->Name("htmlImport/100000-divs/caddis")->Unit(benchmark::kMillisecond);

void deepParse(benchmark::State& state)
{
    for (auto _ : state)
        parseDeep(nested());
}
BENCHMARK(deepParse)->Name("htmlImport/100000-divs/floor:libxml2")->Unit(benchmark::kMillisecond);

} // namespace
} // namespace caddis
