#pragma once

#include "bundles/support/Attributes.h"

#include <string_view>

namespace caddis::bundles {

/// Sets what the head of a Markdown file says of it, and gives the text behind that head.
///
/// The head is YAML between two lines of three hyphens, as static page generators write it, of which simple
/// keys are read, with lists on one line ("[a, b]") or one entry a line ("- a"). Without one the first
/// heading of the first level is the title.
std::string_view readFrontMatter(std::string_view markdown, Attributes& attributes);

} // namespace caddis::bundles
