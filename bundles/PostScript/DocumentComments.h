#pragma once

#include <map>
#include <string>
#include <string_view>

namespace caddis::bundles {

/// The document structuring comments of PostScript (Adobe's DSC 3.0), which say what a program would print
/// without running it: "%%Title: (Oil and lamps)" is "Title" = "Oil and lamps".
///
/// Those of the header, the first of each; what they put off with "(atend)" from the trailer, the last of
/// each. Values lose the parentheses and escapes of PostScript texts. Of a file with a preview around it
/// (EPS for DOS) the PostScript part is read. Empty for what is not PostScript. Takes time linear in the
/// file.
std::map<std::string, std::string, std::less<>> readDocumentComments(std::string_view file);

} // namespace caddis::bundles
