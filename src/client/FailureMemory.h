#pragma once

#include "client/HelperRecord.h"

#include <map>
#include <mutex>
#include <string>

namespace caddis {

/// The files that have harmed a helper, so that they harm no other one: each with its size and time and the
/// version of the software. Once one of these has changed the file is no longer known here.
///
/// Kept in a file when it has one, a line each, which several processes may append to at a time. For use by
/// several threads.
class FailureMemory {
public:
    /// `file`: empty for none. `version` stands for all software that reads the files.
    FailureMemory(std::string file, String version);

    /// What became of this file when it was last asked `question`; attempts are 0.
    std::optional<HelperRecord> find(const String& path, const FileState& state, const String& question);
    void add(const String& path, const FileState& state, const String& question, const HelperRecord& record);

private:
    struct Entry {
        FileState state;
        HelperOutcome outcome;
        int signal;
        String reason;
    };

    void read();
    bool readLine(std::string_view line);

    const std::string m_file;
    const String m_version;
    std::mutex m_lock;
    std::map<std::pair<String, String>, Entry> m_entries;
};

} // namespace caddis
