#pragma once

#include "platform/base/Value.h"

#include <optional>

namespace caddis {
class WebResourceLoadDelegate;
}

/// The requests that turn files into rich text and back.
namespace caddis {

/// The text of a file of any kind that attributedStringWithMarkupFile (pages and saved pages, for which
/// `delegate` decides what is loaded) or attributedStringWithPath knows: "Rtfd", flat RTFD data, and
/// "DocumentAttributes", unless there are none. Nil for a file that can't be read.
std::optional<Dictionary> attributedStringWithContentsOfFile(
    const String& path, WebResourceLoadDelegate* delegate = nullptr);

/// Writes RTFD data as a package to `path`, whole or not at all. False when the data is no rich text, or when
/// the package can't be written.
bool writeRTFDDataToFile(const Data& rtfd, const String& path);

} // namespace caddis
