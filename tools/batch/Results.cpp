#include "Results.h"

#include "JSONLine.h"
#include "Places.h"
#include "ValuePrinter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace caddis::tool {

namespace {

namespace fs = std::filesystem;

constexpr mode_t NewFile = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;

void writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw std::system_error(errno, std::generic_category(), "the records can't be written");
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::string keyOf(std::string_view operation, std::string_view file)
{
    std::string key(operation);
    key += '\0';
    return key += file;
}

// The path's own name in a folder of many: 64 bits of FNV-1a.
std::string nameFor(const Input& input)
{
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : keyOf(input.operation, input.file.utf8()))
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    char digits[17] = {};
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

const char* extensionOf(const Data& data)
{
    const auto bytes = data.chars();
    if (bytes.starts_with("%PDF"))
        return ".pdf";
    if (bytes.starts_with("II*") || bytes.starts_with("MM"))
        return ".tiff";
    if (bytes.starts_with("\x89PNG"))
        return ".png";
    if (bytes.starts_with("rtfd"))
        return ".rtfd";
    return ".data";
}

template <typename Number> std::optional<Number> numberIn(const JSONLine& line, std::string_view name)
{
    const auto text = line.raw(name);
    Number number = 0;
    if (!text || std::from_chars(text->data(), text->data() + text->size(), number).ec != std::errc())
        return std::nullopt;
    return number;
}

// A single question's answer stands for itself.
Value resultOf(const Input& input, const HelperRecord& record)
{
    const bool isSingle = input.operation.find('+') == input.operation.npos;
    return isSingle && record.answers.count() == 1 ? record.answers.begin()->value : Value(record.answers);
}

} // namespace

std::string lineOfRecord(const Input& input, const HelperRecord& record, const String& version)
{
    Dictionary line { { u"file"_s, input.file }, { u"op"_s, String::fromUtf8(input.operation) } };
    std::string text = json(line);
    text.pop_back();
    if (!input.id.empty())
        text += ", \"id\": " + input.id;
    Dictionary rest;
    if (record.state) {
        rest.set(u"size"_s, Value(record.state->size));
        rest.set(u"modified"_s, Value(record.state->modified));
    }
    rest.set(u"version"_s, Value(version));
    rest.set(u"outcome"_s, Value(String(nameOf(record.outcome))));
    if (!record.reason.isEmpty())
        rest.set(u"reason"_s, Value(record.reason));
    if (record.signal)
        rest.set(u"signal"_s, Value(record.signal));
    rest.set(u"attempts"_s, Value(record.attempts));
    rest.set(u"seconds"_s, Value(std::round(record.seconds * 1e6) / 1e6));
    if (!record.answers.isEmpty())
        rest.set(u"result"_s, resultOf(input, record));
    return text + ", " + json(rest).substr(1) + '\n';
}

std::unique_ptr<Results> Results::open(
    const std::optional<std::string>& place, bool resume, String version, std::string& mistake)
{
    std::unique_ptr<Results> results(new Results(std::move(version)));
    if (!place || *place == "-")
        return results;
    std::string file = *place;
    std::error_code error;
    if (file.ends_with('/') || fs::is_directory(file, error)) {
        results->m_folder = fs::path(file) / "data";
        fs::create_directories(results->m_folder, error);
        file = fs::path(file) / "records.jsonl";
    }
    if (!results->openFile(file, resume)) {
        mistake = file + ": " + std::strerror(errno);
        return nullptr;
    }
    return results;
}

bool Results::openFile(const std::string& path, bool resume)
{
    std::error_code error;
    if (resume && fs::exists(path, error) && !keepWholeLines(path))
        return false;
    const int kept = resume ? 0 : O_TRUNC;
    m_file = Descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | kept, NewFile));
    m_out = m_file.number();
    m_path = absolutePath(path).utf8();
    return m_file.isOpen();
}

// Records of files that have changed since, and of another version, go, so that each file has one record.
bool Results::keepWholeLines(const std::string& path)
{
    const std::string fresh = path + ".resumed";
    std::ifstream old(path, std::ios::binary);
    std::ofstream kept(fresh, std::ios::binary | std::ios::trunc);
    for (std::string line; std::getline(old, line) && !old.eof();) {
        const std::size_t before = m_kept.size();
        keep(line);
        if (m_kept.size() > before)
            kept << line << '\n';
    }
    kept.close();
    return kept && std::rename(fresh.c_str(), path.c_str()) == 0;
}

void Results::keep(std::string_view text)
{
    const JSONLine line(text);
    const auto file = line.text("file");
    const auto operation = line.text("op");
    const auto size = numberIn<std::uint64_t>(line, "size");
    const auto modified = numberIn<std::int64_t>(line, "modified");
    if (!file || !operation || !size || !modified || line.text("version") != m_version.utf8())
        return;
    String ignored;
    const FileState state { *size, *modified };
    if (stateOfFile(String::fromUtf8(*file), ignored) == state)
        m_kept.emplace(keyOf(*operation, *file), state);
}

bool Results::has(const Input& input) const
{
    return !m_kept.empty() && m_kept.contains(keyOf(input.operation, input.file.utf8()));
}

bool Results::isOwn(const String& file) const
{
    const std::string path = file.utf8();
    const auto folder = fs::path(m_path).parent_path() / "data" / "";
    return !m_path.empty() && (path == m_path || (!m_folder.empty() && path.starts_with(folder.string())));
}

void Results::add(const Input& input, HelperRecord record)
{
    if (!m_folder.empty()) {
        const Value moved = withDataInFiles(record.answers, m_folder + '/' + nameFor(input));
        record.answers = *moved.as<Dictionary>();
    }
    writeAll(m_out, lineOfRecord(input, record, m_version));
}

// Data becomes {"file": "data/….tiff", "bytes": N}.
Value Results::withDataInFiles(const Value& value, const std::string& name) const
{
    if (const auto* const dictionary = value.as<Dictionary>()) {
        Dictionary result;
        for (const auto& [key, each] : *dictionary) {
            std::string part = key.utf8();
            std::ranges::replace(part, '/', '_');
            result.set(key, withDataInFiles(each, std::string(name).append(".").append(part)));
        }
        return result;
    }
    const auto* const data = value.as<Data>();
    if (!data)
        return value;
    const std::string path = name + extensionOf(*data);
    const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, NewFile));
    if (!file.isOpen())
        throw std::system_error(errno, std::generic_category(), path);
    writeAll(file.number(), data->chars());
    return Dictionary { { u"file"_s, String::fromUtf8("data/" + fs::path(path).filename().string()) },
        { u"bytes"_s, data->size() } };
}

} // namespace caddis::tool
