#pragma once

#include "platform/base/String.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

/// The pages that the markup benchmarks read, as bytes and as units: three generated sets, the same on every
/// machine, and the documentation trees that are installed.
namespace caddis::bench {

struct PageSet {
    std::string name;
    std::vector<std::string> bytes;
    std::vector<String> units {};
    bool wellFormed = false; ///< every page is XML

    std::size_t size() const;
};

const std::vector<PageSet>& pageSets();

/// Registers SUBJECT/SET/WHO for every set: `read` goes once through a whole set, page by page.
using Reader = void (*)(const PageSet&);
void registerReader(const std::string& subject, const std::string& who, Reader read);
/// The same for the well-formed sets alone.
void registerXMLReader(const std::string& subject, const std::string& who, Reader read);

} // namespace caddis::bench
