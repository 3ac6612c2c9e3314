#pragma once

#include "platform/base/Value.h"

#include <optional>

/// The requests that turn documents into pictures.
namespace caddis {

/// The picture in a PDF or PostScript file as PDF data. Nil: the file can't be read, holds a picture of
/// another kind, or one without pages.
std::optional<Data> PDFImageRepOfFile(const std::optional<String>& path);

} // namespace caddis
