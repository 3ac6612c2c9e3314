#pragma once

#include "support/Deflate.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include <zlib.h>

namespace caddis {

/// One member of an archive under construction; what is set replaces the truth.
struct ZipMember {
    std::string name;
    std::string bytes;
    bool isStored = false;
    std::optional<std::uint32_t> size {}; ///< declared, uncompressed
    std::optional<std::uint32_t> compressedSize {}; ///< declared
    std::optional<std::uint32_t> offset {}; ///< of the local header, in the directory
    std::optional<std::uint16_t> method {};
    std::uint16_t flags = 0; ///< 1 encrypted, 8 sizes behind the data, 0x800 name in UTF-8
    std::uint32_t mode = 0100644; ///< of the file, as a Unix archive has it
    bool isDirectoryOnly = false; ///< the member has no local header and no data of its own
    bool isZip64 = false; ///< sizes and offset stand in the directory's extra field
};

/// Writes zip archives, true and false ones.
class ZipBuilder {
public:
    ZipBuilder& add(const ZipMember& member)
    {
        const std::string data = member.isStored ? member.bytes : deflated(member.bytes);
        const auto offset = static_cast<std::uint32_t>(m_members.size());
        const auto crc = static_cast<std::uint32_t>(
            crc32_z(0, reinterpret_cast<const Bytef*>(member.bytes.data()), member.bytes.size()));
        const auto method = member.method.value_or(member.isStored ? 0 : 8);
        const auto compressed = member.compressedSize.value_or(static_cast<std::uint32_t>(data.size()));
        const auto size = member.size.value_or(static_cast<std::uint32_t>(member.bytes.size()));
        const auto nameLength = static_cast<std::uint16_t>(member.name.size());
        const bool isBehind = (member.flags & 8) != 0;
        const std::uint32_t all = 0xFFFFFFFF;

        if (!member.isDirectoryOnly) {
            append(m_members, "PK\3\4", u16(20), u16(member.flags), u16(method), u32(0),
                u32(isBehind ? 0 : crc), u32(isBehind ? 0 : compressed), u32(isBehind ? 0 : size),
                u16(nameLength), u16(0), member.name, data);
            if (isBehind)
                append(m_members, "PK\7\10", u32(crc), u32(compressed), u32(size));
        }

        const std::string extra = member.isZip64
            ? u16(1) + u16(24) + u64(size) + u64(compressed) + u64(member.offset.value_or(offset))
            : std::string();
        append(m_directory, "PK\1\2", u16(3 << 8 | 20), u16(20), u16(member.flags), u16(method), u32(0),
            u32(crc), u32(member.isZip64 ? all : compressed), u32(member.isZip64 ? all : size),
            u16(nameLength), u16(static_cast<std::uint16_t>(extra.size())), u16(0), u16(0), u16(0),
            u32(member.mode << 16), u32(member.isZip64 ? all : member.offset.value_or(offset)), member.name,
            extra);
        m_isZip64 = m_isZip64 || member.isZip64;
        ++m_count;
        return *this;
    }
    ZipBuilder& add(const std::string& name, const std::string& bytes) { return add({ name, bytes }); }

    std::string bytes() const
    {
        std::string archive = m_members + m_directory;
        if (m_isZip64) {
            append(archive, "PK\6\6", u64(44), u16(45), u16(45), u32(0), u32(0),
                u64(static_cast<std::uint64_t>(m_count)), u64(static_cast<std::uint64_t>(m_count)),
                u64(m_directory.size()), u64(m_members.size()));
            append(archive, "PK\6\7", u32(0), u64(m_members.size() + m_directory.size()), u32(1));
        }
        append(archive, "PK\5\6", u16(0), u16(0), u16(m_count), u16(m_count),
            u32(static_cast<std::uint32_t>(m_directory.size())),
            u32(static_cast<std::uint32_t>(m_members.size())), u16(0));
        return archive;
    }

private:
    template <typename Number> static std::string little(Number value)
    {
        return { reinterpret_cast<const char*>(&value), sizeof value };
    }
    static std::string u16(int value) { return little(static_cast<std::uint16_t>(value)); }
    static std::string u32(std::uint32_t value) { return little(value); }
    static std::string u64(std::uint64_t value) { return little(value); }
    template <typename... Parts> static void append(std::string& out, const Parts&... parts)
    {
        (out.append(std::string_view(parts)), ...);
    }

    std::string m_members;
    std::string m_directory;
    int m_count = 0;
    bool m_isZip64 = false;
};

} // namespace caddis
