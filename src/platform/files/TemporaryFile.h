#pragma once

#include "platform/base/String.h"

#include <optional>

namespace caddis {

/// This process's own folder (0700) in the temporary folder ($TMPDIR, else /tmp). It is made when it is first
/// asked for and removed with all that is in it when the process exits. Nil when it can't be made.
std::optional<String> temporaryDirectory();

/// A fresh path in the temporary folder where nothing exists: its last component is `name` and a number that
/// no other call of this process gets. Nobody else can make anything there, because the folder is private.
///
/// Slashes in the name become ":", and a very long one is cut. Nil when there is no temporary folder.
std::optional<String> nonExistingTemporaryFileNamed(const String& name);

} // namespace caddis
