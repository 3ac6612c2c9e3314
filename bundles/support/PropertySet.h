#pragma once

#include "bundles/support/Attributes.h"
#include "bundles/support/CompoundFile.h"

namespace caddis::bundles {

/// Sets what the two property sets of an office document say of it (MS-OLEPS): "\5SummaryInformation" and
/// "\5DocumentSummaryInformation".
void setSummaryInformation(const CompoundFile& file, Attributes& attributes);

} // namespace caddis::bundles
