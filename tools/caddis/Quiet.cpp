#include "Quiet.h"

#include <cstdio>
#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace caddis::tool {

Quiet::Quiet(bool wanted)
{
    if (!wanted)
        return;
    std::fflush(stdout);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    for (const int descriptor : { STDOUT_FILENO, STDERR_FILENO }) {
        m_saved[descriptor - STDOUT_FILENO] = fcntl(descriptor, F_DUPFD_CLOEXEC, 3);
        dup2(nowhere, descriptor);
    }
    close(nowhere);
}

Quiet::~Quiet()
{
    for (const int descriptor : { STDOUT_FILENO, STDERR_FILENO }) {
        const int saved = m_saved[descriptor - STDOUT_FILENO];
        if (saved >= 0) {
            dup2(saved, descriptor);
            close(saved);
        }
    }
}

} // namespace caddis::tool
