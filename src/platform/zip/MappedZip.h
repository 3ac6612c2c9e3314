#pragma once

#include <cstdint>
#include <minizip/ioapi.h>
#include <minizip/unzip.h>

/// How minizip reads an archive out of a mapped file: its table of I/O functions, and what keeps a hostile
/// archive from more than its own bytes.
///
/// The stream that the functions receive holds the file's Data; `opaque` points to the position in it. There
/// is no function for writing: archives opened this way are read-only. The 64-bit table is used, so that
/// positions beyond 4 GiB stay whole.
namespace caddis {

/// Maps the file with that UTF-8 name; null when it can't be read. `mode` is ignored.
voidpf mmap_zopen(voidpf opaque, const void* fileName, int mode);
/// Copies up to `size` bytes and moves the position behind them. Requests beyond the file are answered
/// short, as a file's end would.
uLong mmap_zread(voidpf opaque, voidpf stream, void* buffer, uLong size);
ZPOS64_T mmap_ztell(voidpf opaque, voidpf stream);
/// 0, or -1 for an unknown origin, which leaves the position.
long mmap_zseek(voidpf opaque, voidpf stream, ZPOS64_T offset, int origin);
/// Unmaps the file.
int mmap_zclose(voidpf opaque, voidpf stream);
/// -1 while the position is outside the file, else 0.
int mmap_zerror(voidpf opaque, voidpf stream);

/// The table of the functions above, working on `position`, which must outlive the archive.
zlib_filefunc64_def mmapFunctions(std::int64_t& position);

/// Whether the member can be as long as it says: a stored one has its compressed length at most, a deflated
/// one at most 1032 times that (the format's limit), and nothing compressed is longer than the archive. Asked
/// before any memory is allocated for it. False for other methods, which minizip can't read.
bool canYieldDeclaredSize(const unz_file_info64& member, std::uint64_t archiveSize);

} // namespace caddis
