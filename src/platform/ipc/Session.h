#pragma once

#include <sys/types.h>

namespace caddis {

/// Kills every process of a session, those that its members start meanwhile included. Whoever calls makes
/// sure that the number is still that session's.
void killProcessesOfSession(pid_t session);

} // namespace caddis
