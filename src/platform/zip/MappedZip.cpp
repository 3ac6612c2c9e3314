#include "platform/zip/MappedZip.h"

#include "platform/files/MappedFile.h"
#include "platform/zip/DirectoryCorrections.h"

#include <algorithm>
#include <cstring>
#include <zlib.h>

namespace caddis {

namespace {

constexpr std::uint64_t DeflateLimit = 1032; // Bytes out per byte in; zlib's technical details derive it.

std::int64_t& positionOf(voidpf opaque) { return *static_cast<std::int64_t*>(opaque); }

// What minizip knows as the stream.
struct Stream {
    Data data;
    CorrectedFields corrections;
};

const Data& dataOf(voidpf stream) { return static_cast<const Stream*>(stream)->data; }

// Puts the corrected fields over what was read of them.
void correct(const CorrectedFields& corrections, std::uint64_t begin, std::uint8_t* bytes, std::size_t count)
{
    const std::uint64_t end = begin + count;
    for (auto field = corrections.lower_bound(begin < 3 ? 0 : begin - 3);
         field != corrections.end() && field->first < end; ++field) {
        for (std::size_t index = 0; index < field->second.size(); ++index) {
            const std::uint64_t position = field->first + index;
            if (position >= begin && position < end)
                bytes[position - begin] = field->second[index];
        }
    }
}

// Positions come out of the archive, so their arithmetic must not overflow.
std::int64_t wrapped(std::uint64_t position) { return static_cast<std::int64_t>(position); }

} // namespace

voidpf mmap_zopen(voidpf opaque, const void* fileName, int /*mode*/)
{
    auto data = MappedFile::open(String::fromUtf8(static_cast<const char*>(fileName)));
    positionOf(opaque) = 0;
    if (!data)
        return nullptr;
    auto corrections = directoryCorrections(*data);
    return new Stream { std::move(*data), std::move(corrections) };
}

uLong mmap_zread(voidpf opaque, voidpf stream, void* buffer, uLong size)
{
    std::int64_t& position = positionOf(opaque);
    const Data& data = dataOf(stream);
    if (position < 0 || static_cast<std::uint64_t>(position) >= data.size())
        return 0;
    const auto begin = static_cast<std::size_t>(position);
    const std::size_t count = std::min<std::size_t>(size, data.size() - begin);
    std::memcpy(buffer, data.bytes() + begin, count);
    const CorrectedFields& corrections = static_cast<const Stream*>(stream)->corrections;
    if (!corrections.empty())
        correct(corrections, begin, static_cast<std::uint8_t*>(buffer), count);
    position += static_cast<std::int64_t>(count);
    return count;
}

ZPOS64_T mmap_ztell(voidpf opaque, voidpf /*stream*/) { return static_cast<ZPOS64_T>(positionOf(opaque)); }

long mmap_zseek(voidpf opaque, voidpf stream, ZPOS64_T offset, int origin)
{
    std::int64_t& position = positionOf(opaque);
    switch (origin) {
    case ZLIB_FILEFUNC_SEEK_SET:
        position = wrapped(offset);
        return 0;
    case ZLIB_FILEFUNC_SEEK_CUR:
        position = wrapped(static_cast<std::uint64_t>(position) + offset);
        return 0;
    case ZLIB_FILEFUNC_SEEK_END:
        // Kept on purpose: the end minus the offset. minizip only seeks to the end itself.
        position = wrapped(dataOf(stream).size() - offset);
        return 0;
    default:
        return -1;
    }
}

int mmap_zclose(voidpf opaque, voidpf stream)
{
    positionOf(opaque) = 0;
    delete static_cast<const Stream*>(stream);
    return 0;
}

int mmap_zerror(voidpf opaque, voidpf stream)
{
    const std::int64_t position = positionOf(opaque);
    return position < 0 || static_cast<std::uint64_t>(position) > dataOf(stream).size() ? -1 : 0;
}

zlib_filefunc64_def mmapFunctions(std::int64_t& position)
{
    return { mmap_zopen, mmap_zread, nullptr, mmap_ztell, mmap_zseek, mmap_zclose, mmap_zerror, &position };
}

bool canYieldDeclaredSize(const unz_file_info64& member, std::uint64_t archiveSize)
{
    const std::uint64_t compressed = std::min<std::uint64_t>(member.compressed_size, archiveSize);
    switch (member.compression_method) {
    case 0:
        return member.uncompressed_size <= compressed;
    case Z_DEFLATED:
        return member.uncompressed_size / DeflateLimit <= compressed;
    default:
        return false;
    }
}

} // namespace caddis
