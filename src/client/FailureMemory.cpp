// A line: outcome, signal, size, time, version, question, reason and path, separated by tabs, with "\" before
// what would end a field or a line.

#include "client/FailureMemory.h"

#include "platform/base/Descriptor.h"
#include "platform/base/Log.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace caddis {

namespace {

constexpr std::size_t FieldCount = 8;

std::string escaped(const String& text)
{
    std::string result;
    for (const char byte : text.utf8()) {
        if (byte == '\\' || byte == '\t' || byte == '\n')
            result += '\\';
        result += byte == '\t' ? 't' : byte == '\n' ? 'n' : byte;
    }
    return result;
}

std::vector<std::string> fieldsOf(std::string_view line)
{
    std::vector<std::string> fields(1);
    for (std::size_t index = 0; index < line.size(); ++index) {
        if (line[index] == '\t')
            fields.emplace_back();
        else if (line[index] == '\\' && index + 1 < line.size()) {
            const char next = line[++index];
            fields.back() += next == 't' ? '\t' : next == 'n' ? '\n' : next;
        } else
            fields.back() += line[index];
    }
    return fields;
}

template <typename Number> bool readNumber(const std::string& text, Number& number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

} // namespace

FailureMemory::FailureMemory(std::string file, String version)
    : m_file(std::move(file))
    , m_version(std::move(version))
{
    if (!m_file.empty())
        read();
}

void FailureMemory::read()
{
    std::ifstream file(m_file, std::ios::binary);
    for (std::string line; std::getline(file, line);)
        readLine(line); // A line that was cut off by the end of its writer is none.
}

bool FailureMemory::readLine(std::string_view line)
{
    const auto fields = fieldsOf(line);
    if (fields.size() != FieldCount)
        return false;
    Entry entry {};
    const auto outcome = helperOutcomeNamed(String::fromUtf8(fields[0]));
    if (!outcome || !readNumber(fields[1], entry.signal) || !readNumber(fields[2], entry.state.size)
        || !readNumber(fields[3], entry.state.modified) || String::fromUtf8(fields[4]) != m_version)
        return false;
    entry.outcome = *outcome;
    entry.reason = String::fromUtf8(fields[6]);
    m_entries.insert_or_assign({ String::fromUtf8(fields[7]), String::fromUtf8(fields[5]) }, entry);
    return true;
}

std::optional<HelperRecord> FailureMemory::find(
    const String& path, const FileState& state, const String& question)
{
    const std::scoped_lock guard(m_lock);
    const auto found = m_entries.find({ path, question });
    if (found == m_entries.end() || found->second.state != state)
        return std::nullopt;
    const Entry& entry = found->second;
    HelperRecord record;
    record.outcome = entry.outcome;
    record.signal = entry.signal;
    record.reason = entry.reason;
    return record;
}

void FailureMemory::add(
    const String& path, const FileState& state, const String& question, const HelperRecord& record)
{
    const std::scoped_lock guard(m_lock);
    m_entries.insert_or_assign(
        { path, question }, Entry { state, record.outcome, record.signal, record.reason });
    if (m_file.empty())
        return;
    const std::string line = String(nameOf(record.outcome)).utf8() + '\t' + std::to_string(record.signal)
        + '\t' + std::to_string(state.size) + '\t' + std::to_string(state.modified) + '\t'
        + escaped(m_version) + '\t' + escaped(question) + '\t' + escaped(record.reason) + '\t' + escaped(path)
        + '\n';
    // In one call, so that lines of several processes do not mix.
    const Descriptor file(open(m_file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen() || write(file.number(), line.data(), line.size()) != ssize_t(line.size()))
        log(u"%s: %s", std::string_view(m_file), static_cast<const char*>(std::strerror(errno)));
}

} // namespace caddis
