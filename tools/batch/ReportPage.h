#pragma once

#include "Inputs.h"
#include "client/HelperRecord.h"

#include <mutex>
#include <string>
#include <vector>

namespace caddis::tool {

/// One page about many files that needs nothing beside itself: pictures, texts and the script stand in it,
/// and it asks nobody for anything. For several threads.
class ReportPage {
public:
    /// `root` is the folder that the page is about; files are shown by their paths in it.
    explicit ReportPage(std::string root);

    /// A record of "info+preview".
    void add(const Input& input, const HelperRecord& record);

    /// The page, in UTF-8. `summary` is a line about the run.
    std::string html(const std::string& summary);

private:
    struct Entry {
        std::string path; // in the root
        std::string json;
    };

    const std::string m_root;
    std::mutex m_lock;
    std::vector<Entry> m_entries;
};

} // namespace caddis::tool
