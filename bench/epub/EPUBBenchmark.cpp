#include "epub/EPUBParser.h"

#include <benchmark/benchmark.h>

#include "support/EPUBBuilder.h"
#include "support/TemporaryFolder.h"
#include <fstream>
#include <libxml/parser.h>
#include <minizip/unzip.h>
#include <random>

namespace {

using namespace caddis;

constexpr int Documents = 1169;

// A book of that many documents, about 4 MB.
const std::string& book()
{
    static const TemporaryFolder folder;
    static const std::string path = [] {
        std::minstd_rand random(1);
        std::string manifest = "<dc:title>A Book</dc:title><dc:creator opf:role='aut'>Somebody</dc:creator>";
        std::string spine;
        ZipBuilder archive;
        archive.add({ "mimetype", "application/epub+zip", true });
        for (int index = 0; index < Documents; ++index) {
            const std::string name = "chapter" + std::to_string(index);
            std::string text(3400, ' ');
            for (char& letter : text)
                letter = static_cast<char>(random());
            const std::string file = "text/" + name + ".xhtml";
            archive.add({ "OPS/" + file, text, true });
            manifest.append("<item id='").append(name).append("' href='").append(file);
            manifest.append("' media-type='application/xhtml+xml'/>\n");
            spine.append("<itemref idref='").append(name).append("'/>\n");
        }
        archive.add("META-INF/container.xml", containerDocument);
        archive.add("OPS/a.opf", packageDocument(manifest + spine));
        return folder.write("book.epub", archive.bytes()).utf8();
    }();
    return path;
}

std::string readMember(unzFile archive, const char* name)
{
    unz_file_info64 info;
    unzLocateFile(archive, name, 2);
    unzGetCurrentFileInfo64(archive, &info, nullptr, 0, nullptr, 0, nullptr, 0);
    std::string bytes(info.uncompressed_size, '\0');
    unzOpenCurrentFile(archive);
    unzReadCurrentFile(archive, bytes.data(), static_cast<unsigned>(bytes.size()));
    unzCloseCurrentFile(archive);
    return bytes;
}

// The resident memory of this process's own pages, in bytes.
double privateMemory()
{
    std::ifstream status("/proc/self/smaps_rollup");
    for (std::string word; status >> word;) {
        if (word == "Private_Dirty:") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    return 0;
}

void openCaddis(benchmark::State& state)
{
    const String path = String::fromUtf8(book());
    {
        const EPUBParser warm(path);
    }
    const double before = privateMemory();
    const EPUBParser kept(path);
    state.counters["grownBytes"] = privateMemory() - before;
    for (auto _ : state) {
        const EPUBParser parser(path);
        benchmark::DoNotOptimize(parser.metaData().count());
    }
}

// minizip over stdio for the three members that are read, and libxml2 for the events of the two documents,
// which nobody listens to.
void openFloor(benchmark::State& state)
{
    const std::string path = book();
    for (auto _ : state) {
        const unzFile archive = unzOpen64(path.c_str());
        benchmark::DoNotOptimize(readMember(archive, "mimetype"));
        for (const auto* name : { "META-INF/container.xml", "OPS/a.opf" }) {
            const std::string document = readMember(archive, name);
            xmlSAXHandler events {};
            events.initialized = XML_SAX2_MAGIC;
            xmlSAXUserParseMemory(&events, nullptr, document.data(), static_cast<int>(document.size()));
        }
        unzClose(archive);
    }
}

BENCHMARK(openCaddis)->Name("openEPUB/1169-documents/caddis")->Unit(benchmark::kMicrosecond);
BENCHMARK(openFloor)->Name("openEPUB/1169-documents/floor:minizip+libxml2")->Unit(benchmark::kMicrosecond);

} // namespace
