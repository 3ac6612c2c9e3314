#pragma once

#include "platform/base/Value.h"

namespace caddis {

/// Makes the content types known that a bundle's Info.plist declares under "UTExportedTypeDeclarations" and
/// "UTImportedTypeDeclarations": their extensions ("public.filename-extension") and MIME types
/// ("public.mime-type"), each an array or a single string. Those that conform to com.apple.package or
/// public.directory are types of folders.
void declareContentTypes(const Dictionary& info);

} // namespace caddis
