#pragma once

#include "service/HelperOptions.h"

/// What the process is held to, whatever a document makes its libraries do.
namespace caddis {

/// No core dumps, first to go when the machine runs out of memory, and a limit to its own memory (--memory,
/// or else four fifths of what is available now). An attached helper ends here when its launcher has gone.
void limitProcess(const HelperOptions& options);

/// Makes the empty folder beside the socket of `name` the place for temporary files, of children too. The
/// name has to be registered.
void useScratchFolder(const String& name);

/// Enters the reader's profile; logs what the kernel does not have of it.
void enterReaderProfile();

} // namespace caddis
