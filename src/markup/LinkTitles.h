#pragma once

#include "platform/base/URL.h"

#include <unordered_map>

namespace caddis {
inline namespace XmlExtensions {

/// The texts of a document's links (`<a href>`) by the absolute text of their URL, resolved against `base`:
/// tags stripped, entities converted, runs of white space as one space. Of several links to one URL the first
/// with a text counts; links that resolve to no URL are left out.
std::unordered_map<String, String> getLinkTitles(const String& html, const URL& base);

} // namespace XmlExtensions
} // namespace caddis
