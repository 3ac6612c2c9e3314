#include "platform/richtext/FlatRTFD.h"

#include "platform/files/ByteReader.h"

#include <algorithm>
#include <limits>

namespace caddis {

namespace {

constexpr std::uint32_t Bytes = 1;
constexpr std::uint32_t Folder = 3;
constexpr std::uint32_t Aligned = 0x80000000;
constexpr std::size_t Page = 4096;
constexpr std::size_t DeepestFolder = 32;
constexpr std::size_t LargestBlock = 0x7FFFFFFF;
constexpr std::size_t RecordSize = 16;
constexpr std::string_view Magic { "rtfd\0\0\0\0", 8 };
constexpr std::u16string_view RecordName = u".";

// One block, read; positions count from its beginning, which is what members are aligned to.
class Reader {
public:
    explicit Reader(const Data& data)
        : m_data(data)
    {
    }
    bool readFolder(Range range, FileWrapper& folder, std::size_t depth) const;

private:
    bool readEntry(Range range, FileWrapper& member, std::size_t depth) const;
    bool readContents(Range range, FileWrapper& member) const;

    const Data& m_data;
};

std::optional<std::vector<std::string_view>> readNames(ByteReader& reader, std::size_t limit)
{
    const auto count = reader.u32();
    if (!count || *count > limit / 8)
        return std::nullopt;
    std::vector<std::string_view> names(*count);
    for (auto& name : names) {
        const auto length = reader.u32();
        const auto bytes = length ? reader.bytes(*length) : std::nullopt;
        if (!bytes)
            return std::nullopt;
        name = *bytes;
    }
    return names;
}

// Records whose number does not fit are passed over: they only say when and how members were written.
void takeRecords(const Data& record, std::vector<FileWrapper>& members)
{
    ByteReader reader(record.chars());
    const auto names = readNames(reader, record.size());
    if (!names || names->size() != members.size())
        return;
    for (std::size_t index = 0; index < members.size(); ++index) {
        if (reader.u32() != RecordSize)
            return;
    }
    for (FileWrapper& member : members) {
        const auto time = reader.u32();
        const auto mode = reader.u32();
        const auto third = reader.u32();
        const auto fourth = reader.u32();
        if (fourth)
            member.attributes = { *time, *mode, { *third, *fourth } };
    }
}

bool Reader::readFolder(Range range, FileWrapper& folder, std::size_t depth) const
{
    folder.isDirectory = true;
    const std::string_view bytes = m_data.chars().substr(range.location, range.length);
    ByteReader reader(bytes);
    const auto names = readNames(reader, bytes.size());
    if (depth > DeepestFolder || !names)
        return false;
    std::size_t begin = range.location + 4 + names->size() * 8;
    for (const std::string_view name : *names)
        begin += name.size();
    Data record;
    for (const std::string_view name : *names) {
        const auto size = reader.u32();
        FileWrapper member;
        member.name = String::fromUtf8(name);
        if (!size || begin > range.end() || *size > range.end() - begin
            || !readEntry({ begin, *size }, member, depth))
            return false;
        begin += *size;
        if (member.name == RecordName && !member.isDirectory && folder.recordIndex == FileWrapper::NoRecord) {
            folder.recordIndex = folder.members.size();
            record = member.contents;
        } else {
            folder.members.push_back(std::move(member));
        }
    }
    takeRecords(record, folder.members);
    return true;
}

bool Reader::readEntry(Range range, FileWrapper& member, std::size_t depth) const
{
    const auto type = ByteReader(m_data.chars().substr(range.location, range.length)).u32();
    const Range body { range.location + 4, range.length - 4 };
    if (type == Folder)
        return readFolder(body, member, depth + 1);
    return type == Bytes && readContents(body, member);
}

bool Reader::readContents(Range range, FileWrapper& member) const
{
    ByteReader reader(m_data.chars().substr(range.location, range.length));
    auto length = reader.u32();
    std::size_t begin = 4;
    if (length == Aligned) {
        length = reader.u32();
        const auto pad = reader.u32();
        if (!pad)
            return false;
        begin = 12 + std::size_t { *pad };
    }
    if (!length || begin > range.length || *length > range.length - begin)
        return false;
    member.contents = m_data.slice({ range.location + begin, *length });
    return true;
}

// Sizes first, so that the bytes are put together in one block of the right length.
class Writer {
public:
    bool measure(const FileWrapper& folder, std::size_t begin, std::size_t depth);
    std::size_t size() const { return m_end; }
    std::vector<std::uint8_t> write(const FileWrapper& folder);

private:
    static std::vector<std::uint8_t> recordOf(const FileWrapper& folder);
    static std::size_t sizeOfContents(std::size_t length, std::size_t begin);
    void folder(const FileWrapper& folder);
    void contents(std::span<const std::uint8_t> bytes);
    void number(std::size_t value);
    void bytes(std::span<const std::uint8_t> bytes) { m_out.insert(m_out.end(), bytes.begin(), bytes.end()); }
    void text(std::string_view text) { m_out.insert(m_out.end(), text.begin(), text.end()); }

    std::vector<std::size_t> m_sizes; // Of entries, in the order of writing.
    std::size_t m_nextSize = 0;
    std::size_t m_end = 0;
    std::vector<std::uint8_t> m_out;
};

void appendNumber(std::vector<std::uint8_t>& out, std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        out.push_back(static_cast<std::uint8_t>(value >> shift));
}

std::vector<std::uint8_t> Writer::recordOf(const FileWrapper& folder)
{
    std::vector<std::uint8_t> record;
    appendNumber(record, static_cast<std::uint32_t>(folder.members.size()));
    for (const FileWrapper& member : folder.members) {
        const std::string name = member.name.utf8();
        appendNumber(record, static_cast<std::uint32_t>(name.size()));
        record.insert(record.end(), name.begin(), name.end());
    }
    for (std::size_t index = 0; index < folder.members.size(); ++index)
        appendNumber(record, RecordSize);
    for (const FileWrapper& member : folder.members) {
        const auto& attributes = member.attributes;
        for (const std::uint32_t word :
            { attributes.modificationTime, attributes.mode, attributes.words[0], attributes.words[1] })
            appendNumber(record, word);
    }
    return record;
}

// `begin` is where the entry's type word stands.
std::size_t Writer::sizeOfContents(std::size_t length, std::size_t begin)
{
    if (length < Page)
        return 8 + length;
    const std::size_t afterPad = begin + 16;
    return 16 + (Page - afterPad % Page) % Page + length;
}

// Visits the members and, in its place among them, the record (a null pointer).
template <typename Visit> bool forEachEntry(const FileWrapper& folder, Visit&& visit)
{
    for (std::size_t index = 0; index <= folder.members.size(); ++index) {
        if (index == folder.recordIndex && !visit(nullptr))
            return false;
        if (index < folder.members.size() && !visit(&folder.members[index]))
            return false;
    }
    return true;
}

bool Writer::measure(const FileWrapper& folder, std::size_t begin, std::size_t depth)
{
    m_end = begin + 4;
    forEachEntry(folder, [&](const FileWrapper* member) {
        m_end += 8 + (member ? member->name.utf8().size() : RecordName.size());
        return true;
    });
    return depth <= DeepestFolder && forEachEntry(folder, [&](const FileWrapper* member) {
        const std::size_t entry = m_end;
        const std::size_t place = m_sizes.size();
        m_sizes.push_back(0);
        if (member && member->isDirectory) {
            if (!measure(*member, entry + 4, depth + 1))
                return false;
        } else {
            m_end += sizeOfContents(member ? member->contents.size() : recordOf(folder).size(), entry);
        }
        m_sizes[place] = m_end - entry;
        return m_end <= LargestBlock;
    });
}

std::vector<std::uint8_t> Writer::write(const FileWrapper& root)
{
    m_out.reserve(m_end);
    text(Magic);
    number(Folder);
    folder(root);
    return std::move(m_out);
}

void Writer::number(std::size_t value) { appendNumber(m_out, static_cast<std::uint32_t>(value)); }

// Sizes are in the order of a walk that goes into folders, so a folder skips those of its members' members.
void Writer::folder(const FileWrapper& folder)
{
    number(folder.members.size() + (folder.recordIndex <= folder.members.size() ? 1 : 0));
    forEachEntry(folder, [&](const FileWrapper* member) {
        const std::string name = member ? member->name.utf8() : std::string(".");
        number(name.size());
        text(name);
        return true;
    });
    const std::size_t first = m_nextSize;
    const auto countOf = [](const auto& self, const FileWrapper& item) -> std::size_t {
        std::size_t count = 1;
        if (item.isDirectory) {
            count += item.recordIndex <= item.members.size() ? 1 : 0;
            for (const FileWrapper& member : item.members)
                count += self(self, member);
        }
        return count;
    };
    std::size_t place = first;
    forEachEntry(folder, [&](const FileWrapper* member) {
        number(m_sizes[place]);
        place += member ? countOf(countOf, *member) : 1;
        return true;
    });
    forEachEntry(folder, [&](const FileWrapper* member) {
        ++m_nextSize;
        if (member && member->isDirectory) {
            number(Folder);
            this->folder(*member);
        } else if (member) {
            contents(member->contents.span());
        } else {
            contents(recordOf(folder));
        }
        return true;
    });
}

void Writer::contents(std::span<const std::uint8_t> data)
{
    number(Bytes);
    if (data.size() >= Page) {
        number(Aligned);
        number(data.size());
        const std::size_t pad = (Page - (m_out.size() + 4) % Page) % Page;
        number(pad);
        m_out.resize(m_out.size() + pad);
    } else {
        number(data.size());
    }
    bytes(data);
}

} // namespace

bool isFlatRTFD(std::string_view bytes) { return bytes.starts_with(Magic); }

std::optional<FileWrapper> fileWrapperWithFlatRTFD(const Data& data)
{
    constexpr std::size_t Head = 12;
    if (data.size() < Head || !isFlatRTFD(data.chars()) || ByteReader(data.chars(), 8).u32() != Folder)
        return std::nullopt;
    FileWrapper folder;
    if (!Reader(data).readFolder({ Head, data.size() - Head }, folder, 0))
        return std::nullopt;
    return folder;
}

std::optional<Data> flatRTFDOfFileWrapper(const FileWrapper& folder)
{
    constexpr std::size_t Head = 12;
    Writer writer;
    if (!writer.measure(folder, Head, 0) || writer.size() > LargestBlock)
        return std::nullopt;
    return Data::adopt(writer.write(folder));
}

} // namespace caddis
