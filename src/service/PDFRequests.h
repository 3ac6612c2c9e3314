#pragma once

#include "platform/base/Value.h"

#include <optional>

/// The requests about PDF documents.
namespace caddis {

enum class PageSize : bool { LeftOut = false, Wanted = true };

/// The text of a PDF: "String", plain, or RTFD data when it is wanted `attributed`, unless the document is
/// locked, "Locked" if it is, "PageCount", and the document's attributes under their own keys. Pages are read
/// for at most 60 seconds.
///
/// With PageSize::Wanted also "Size" and "PixelSize", both the first page's media box, and "Alpha", false; a
/// document without pages has none of the three. `file` is deliberately not used: only the bytes count. Nil:
/// no bytes, or no PDF.
std::optional<Dictionary> _attributedStringWithPDF(
    bool attributed, const std::optional<Data>& pdf, const std::optional<String>& file, PageSize size);

} // namespace caddis
