#pragma once

#include "bundles/support/TextSink.h"
#include "bundles/support/ZipPackage.h"

namespace caddis::bundles {

/// The sheets of a workbook (ECMA-376, part 1, 18): the name of each, then its rows, cells apart by tabs.
/// Numbers come as they are stored, dates in ISO 8601.
void readWorkbook(ZipPackage& package, Attributes& attributes, TextSink& text);

} // namespace caddis::bundles
