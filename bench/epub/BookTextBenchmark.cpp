// The text of a whole book through a warm helper, beside what zlib alone needs to inflate the documents.

#include "client/HelperProxy.h"
#include "client/HelperTask.h"
#include "client/OstraImExport.h"
#include "markup/PageSets.h"
#include "support/EPUBBuilder.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <map>

namespace {

using namespace caddis;

struct Book {
    String path;
    std::vector<std::string> deflated;
    std::vector<std::size_t> sizes;
};

// Real pages where they are installed: generated ones have few words, which zlib is done with in no time.
const bench::PageSet& bookPages()
{
    const auto& sets = bench::pageSets();
    const auto real
        = std::ranges::find_if(sets, [](const bench::PageSet& set) { return set.name == "postgresql-doc"; });
    return real != sets.end() ? *real : sets.front();
}

// Pages, again and again, until the documents have that many bytes.
Book makeBook(std::size_t bytes)
{
    static const TemporaryFolder folder;
    const auto& pages = bookPages().bytes;
    Book book;
    ZipBuilder archive;
    archive.add({ "mimetype", "application/epub+zip", true })
        .add("META-INF/container.xml", containerDocument);
    std::string manifest;
    std::string spine;
    std::size_t total = 0;
    for (std::size_t index = 0; total < bytes; ++index) {
        const std::string& page = pages[index % pages.size()];
        const std::string name = "chapter" + std::to_string(index);
        archive.add("OPS/" + name, page);
        manifest.append("<item media-type='application/xhtml+xml' id='").append(name);
        manifest.append("' href='").append(name).append("'/>");
        spine.append("<itemref idref='").append(name).append("'/>");
        book.deflated.push_back(deflated(page));
        book.sizes.push_back(page.size());
        total += page.size();
    }
    archive.add("OPS/a.opf", packageDocument(manifest + spine));
    book.path = folder.write("book" + std::to_string(bytes) + ".epub", archive.bytes());
    return book;
}

const Book& bookOf(std::size_t megabytes)
{
    static std::map<std::size_t, Book> books;
    auto& book = books[megabytes];
    if (book.sizes.empty())
        book = makeBook(megabytes << 20);
    return book;
}

void textThroughHelper(benchmark::State& state, std::size_t megabytes)
{
    const Book& book = bookOf(megabytes);
    const PrivateRuntimeDirectory directory;
    const auto task = HelperTask::initWithPath(String::fromLatin1(CADDIS_HELPER_PROGRAM),
        String(HelperServiceName), &OstraImExport, 60, QualityOfService::Default);
    const HelperProxy helper(*task->proxy());
    for (auto _ : state)
        benchmark::DoNotOptimize(helper.metaDataForFile(book.path));
}

void inflateOnly(benchmark::State& state, std::size_t megabytes)
{
    const Book& book = bookOf(megabytes);
    for (auto _ : state) {
        for (std::size_t index = 0; index < book.sizes.size(); ++index) {
            const std::unique_ptr<Bytef[]> out(new Bytef[book.sizes[index]]);
            z_stream stream {};
            inflateInit2(&stream, -MAX_WBITS);
            stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(book.deflated[index].data()));
            stream.avail_in = static_cast<uInt>(book.deflated[index].size());
            stream.next_out = out.get();
            stream.avail_out = static_cast<uInt>(book.sizes[index]);
            inflate(&stream, Z_FINISH);
            inflateEnd(&stream);
            benchmark::DoNotOptimize(out.get());
        }
    }
}

const bool registered = [] {
    for (const std::size_t megabytes : { 1U, 16U }) {
        const std::string subject = "bookText/" + std::to_string(megabytes) + "MB/";
        benchmark::RegisterBenchmark((subject + "caddis").c_str(), textThroughHelper, megabytes)
            ->Unit(benchmark::kMicrosecond)
            ->UseRealTime();
        benchmark::RegisterBenchmark((subject + "floor:zlib").c_str(), inflateOnly, megabytes)
            ->Unit(benchmark::kMicrosecond)
            ->UseRealTime();
    }
    return true;
}();

} // namespace
