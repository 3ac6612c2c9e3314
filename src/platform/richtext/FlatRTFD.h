#pragma once

#include "platform/richtext/FileWrapper.h"

#include <optional>

/// A folder's members as one block of bytes: the data form of an RTFD document. Little-endian.
///
///     "rtfd" 0 | 3 | dictionary
///     dictionary:  n | n x (length name) | n x size | n x entry
///     entry:       1 | length bytes                      or, from 4096 bytes on, at a multiple of 4096:
///                  1 | 0x80000000 | length | pad | zeros | bytes
///                  3 | dictionary                        for a folder
///
/// The member "." holds the modification times and modes of its siblings.
///
/// Source: read off documents that the platform wrote, all of which come out byte for byte as they went in.
namespace caddis {

bool isFlatRTFD(std::string_view bytes);

/// The folder. Contents are parts of `data`, not copies. Nil when the bytes are no such block, when an entry
/// does not lie in its folder, or when folders nest deeper than 32.
std::optional<FileWrapper> fileWrapperWithFlatRTFD(const Data& data);

/// One copy of the contents. Nil when the folder is deeper than 32 or longer than 2 GiB.
std::optional<Data> flatRTFDOfFileWrapper(const FileWrapper& folder);

} // namespace caddis
