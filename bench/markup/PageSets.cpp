#include "markup/PageSets.h"

#include <algorithm>
#include <expat.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <random>

namespace caddis::bench {

namespace {

constexpr std::size_t GeneratedBytes = std::size_t(2) << 20;
constexpr std::size_t InstalledBytes = std::size_t(4) << 20;
constexpr std::size_t PageBytes = std::size_t(64) << 10;

class PageWriter {
public:
    explicit PageWriter(unsigned seed)
        : m_random(seed)
    {
    }

    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }

    std::string words(unsigned count)
    {
        static const char* const some[]
            = { "the", "reader", "of", "a", "page", "finds", "what", "markup", "hides", "in", "plain",
                  "sight", "documentation", "is", "value", "and", "every", "line", "follows", "from", "it" };
        static const char* const rare[]
            = { "na\xC3\xAFve", "&amp;", "\xE2\x80\x94", "\xE2\x80\x9Cso\xE2\x80\x9D" };
        std::string text;
        while (count-- > 0)
            text.append(text.empty() ? "" : " ")
                .append(below(30) ? some[below(std::size(some))] : rare[below(std::size(rare))]);
        return text;
    }

    // Long paragraphs with a link or an emphasis now and then.
    std::string article()
    {
        std::string text = "<p>" + words(20 + below(40));
        for (unsigned links = below(3); links > 0; --links)
            text += " <a href=\"https://example.org/" + words(1) + "?id=1\">" + words(3) + "</a> "
                + words(10 + below(20));
        return text + " <em>" + words(2) + "</em>.</p>\n";
    }

    // A row of a table: hardly a word without a tag around it.
    std::string dense()
    {
        std::string row = "<tr class=\"row\">";
        for (int cell = 0; cell < 6; ++cell)
            row += "<td><span class=\"n\">" + words(1) + "</span><br/><b>" + words(1) + "</b></td>";
        return row + "</tr>\n";
    }

    // A reference page: definitions, code, long links.
    std::string reference()
    {
        const std::string target = "../../../library/" + words(1) + ".html#module-member-" + words(1);
        return "<dl class=\"py method\">\n<dt class=\"sig sig-object py\" id=\"module.member\">\n"
               "<span class=\"sig-prename descclassname\"><span class=\"pre\">"
            + words(1) + ".</span></span><a class=\"reference internal\" href=\"" + target + "\" title=\""
            + words(4) + "\">" + words(1) + "</a></dt>\n<dd><p>" + words(15 + below(25)) + "</p>\n<pre>"
            + words(5) + "\n    " + words(5) + "</pre></dd></dl>\n";
    }

    std::string page(std::string (PageWriter::*part)(), const std::string& before, const std::string& behind)
    {
        std::string text = "<!DOCTYPE html>\n<html><head><title>" + words(4)
            + "</title><style>p { margin: 0 }</style></head><body>" + before;
        while (text.size() < PageBytes)
            text += (this->*part)();
        return text + behind + "</body></html>\n";
    }

private:
    std::minstd_rand m_random;
};

PageSet generated(const std::string& name, std::string (PageWriter::*part)(), const std::string& before = "",
    const std::string& behind = "")
{
    PageWriter writer(11);
    PageSet set { name, {} };
    while (set.bytes.size() * PageBytes < GeneratedBytes)
        set.bytes.push_back(writer.page(part, before, behind));
    return set;
}

PageSet installed(const std::string& name, const std::filesystem::path& folder)
{
    PageSet set { name, {} };
    std::vector<std::filesystem::path> paths;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
        if (entry.path().extension() == ".html")
            paths.push_back(entry.path());
    }
    std::ranges::sort(paths);
    std::size_t size = 0;
    for (const auto& path : paths) {
        std::ifstream file(path, std::ios::binary);
        set.bytes.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        size += set.bytes.back().size();
        if (size >= InstalledBytes)
            break;
    }
    return set;
}

bool isWellFormed(const std::string& page)
{
    XML_Parser parser = XML_ParserCreate("UTF-8");
    XML_UseForeignDTD(parser, XML_TRUE);
    const auto status = XML_Parse(parser, page.data(), static_cast<int>(page.size()), 1);
    XML_ParserFree(parser);
    return status == XML_STATUS_OK;
}

std::vector<PageSet> readSets()
{
    std::vector<PageSet> sets;
    sets.push_back(generated("article", &PageWriter::article));
    sets.push_back(generated("dense", &PageWriter::dense, "<table>", "</table>"));
    sets.push_back(generated("reference", &PageWriter::reference));
    sets.push_back(installed("postgresql-doc", "/usr/share/doc/postgresql-doc-15/html"));
    sets.push_back(installed("python3-doc", "/usr/share/doc/python3.11/html/library"));
    std::erase_if(sets, [](const PageSet& set) { return set.bytes.empty(); });
    for (PageSet& set : sets) {
        for (const std::string& page : set.bytes)
            set.units.push_back(String::fromUtf8(page));
        set.wellFormed = std::ranges::all_of(set.bytes, isWellFormed);
    }
    return sets;
}

void registerReaderOf(const PageSet& set, const std::string& subject, const std::string& who, Reader read)
{
    benchmark::RegisterBenchmark(
        (subject + '/' + set.name + '/' + who).c_str(), [&set, read](benchmark::State& state) {
            for (auto _ : state)
                read(set);
            state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(set.size()));
        });
}

} // namespace

std::size_t PageSet::size() const
{
    return std::transform_reduce(bytes.begin(), bytes.end(), std::size_t(0), std::plus<>(),
        [](const std::string& page) { return page.size(); });
}

const std::vector<PageSet>& pageSets()
{
    static const std::vector<PageSet> sets = readSets();
    return sets;
}

void registerReader(const std::string& subject, const std::string& who, Reader read)
{
    for (const PageSet& set : pageSets())
        registerReaderOf(set, subject, who, read);
}

void registerXMLReader(const std::string& subject, const std::string& who, Reader read)
{
    for (const PageSet& set : pageSets()) {
        if (set.wellFormed)
            registerReaderOf(set, subject, who, read);
    }
}

} // namespace caddis::bench
