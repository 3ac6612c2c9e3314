#pragma once

#include "bundles/support/Attributes.h"

#include <string>

namespace caddis::bundles {

/// MobiPocket and what followed it, azw3; text and all, unless the book is encrypted. False: not one of
/// these.
bool readMobiBook(Attributes& attributes, const std::string& path);

/// FictionBook 2. False: no well-formed XML.
bool readFictionBook(Attributes& attributes, const std::string& path);

} // namespace caddis::bundles
