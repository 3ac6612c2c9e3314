#pragma once

#include "platform/base/FunctionRef.h"
#include "platform/base/Value.h"

#include <span>

namespace caddis {

/// All entries of a list of navigation entries (see NCXParser), those inside others included.
std::size_t countChildren(const Array& entries);

/// A table of contents from a flat NCX list that is shorter than the spine: the documents that it does not
/// list become children of the nearest listed one before them, and those before the first listed one stand
/// ahead of the list.
///
/// `contents` are the spine's documents in order, `titleOf` gives the title of one that the NCX does not
/// list.
Array treeOfSpine(
    const Array& ncx, std::span<const String> contents, FunctionRef<String(const String&)> titleOf);

} // namespace caddis
