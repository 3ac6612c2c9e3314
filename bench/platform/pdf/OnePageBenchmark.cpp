// The text of a document of one page through a warm helper, beside the limit of two milliseconds.

#include "client/HelperProxy.h"
#include "client/HelperTask.h"
#include "client/OstraImExport.h"
#include "support/PDFBuilder.h"
#include "support/PrivateRuntimeDirectory.h"

#include <benchmark/benchmark.h>

namespace {

using namespace caddis;

// A page of 50 lines, 4,000 characters.
Data onePage()
{
    PDFBuilder builder;
    std::string content = "BT /F1 10 Tf 14 TL 50 760 Td\n";
    for (int line = 0; line < 50; ++line)
        content
            += "[(The quick bro) -20 (wn fox jumps over the lazy dog; ) 15 (the rain in Spain falls on the "
               "plain)] TJ T*\n";
    builder.page(content + "ET");
    builder.info("/Title (One page) /Author (Somebody)");
    return builder.data();
}

void throughHelper(benchmark::State& state)
{
    const PrivateRuntimeDirectory directory;
    const auto task = HelperTask::initWithPath(String::fromLatin1(CADDIS_HELPER_PROGRAM),
        String(HelperServiceName), &OstraImExport, 60, QualityOfService::Default);
    const HelperProxy helper(*task->proxy());
    const Data document = onePage();
    for (auto _ : state)
        benchmark::DoNotOptimize(helper.attributedStringWithPDF(false, document));
}

void limit(benchmark::State& state)
{
    for (auto _ : state)
        state.SetIterationTime(2e-3);
}

BENCHMARK(throughHelper)->Name("pdfOnePage/warm/caddis")->UseRealTime();
BENCHMARK(limit)->Name("pdfOnePage/warm/limit:2ms")->UseManualTime()->Iterations(1);

} // namespace
