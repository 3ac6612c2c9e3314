#pragma once

#include "Inputs.h"
#include "client/HelperRecord.h"
#include "platform/base/Descriptor.h"

#include <atomic>
#include <memory>
#include <unordered_map>

namespace caddis::tool {

/// One line of JSON: what was asked, what the file was like then, and what came of it.
///
///     {"file": "/a.pdf", "op": "info", "id": 7, "size": 1234, "modified": 1700000000000000000,
///      "version": "…", "outcome": "ok", "reason": "", "signal": 0, "attempts": 1, "seconds": 0.0021,
///      "result": {…}}
///
/// "id" is there when the input had one; "size" and "modified" (nanoseconds since 1970) when the file can be
/// read; "reason", "signal" and "result" when there is one.
std::string lineOfRecord(const Input& input, const HelperRecord& record, const String& version);

/// Where records go: standard output; a file; or a folder, with "records.jsonl" and, beside it, each piece of
/// data in a file of its own. Lines are written whole, so that whoever stops us leaves whole ones but for the
/// last. For several threads.
class Results {
public:
    /// Standard output without a place. `resume` keeps the records that are there. Null, with a word in
    /// `mistake`, when it can't be opened.
    static std::unique_ptr<Results> open(
        const std::optional<std::string>& place, bool resume, String version, std::string& mistake);

    /// Whether a record is there of this input, this very file, and this version of the software.
    bool has(const Input& input) const;
    /// Whether the file is one that is written here: of a folder that holds the results too, they are no
    /// input.
    bool isOwn(const String& file) const;
    /// Whether a later run can go on from here.
    bool isKept() const { return m_file.isOpen(); }
    std::size_t countOfKept() const { return m_kept.size(); }

    /// Throws std::system_error when it can't be written.
    void add(const Input& input, HelperRecord record);

private:
    explicit Results(String version)
        : m_version(std::move(version))
    {
    }
    bool openFile(const std::string& path, bool resume);
    bool keepWholeLines(const std::string& path);
    void keep(std::string_view line);
    Value withDataInFiles(const Value& value, const std::string& name) const;

    const String m_version;
    std::string m_folder; // for data; empty: data stands in the records
    std::string m_path; // of the records, absolute; empty: standard output
    Descriptor m_file;
    int m_out = 1;
    std::unordered_map<std::string, FileState> m_kept; // by operation and file
};

} // namespace caddis::tool
