#pragma once

#include <cstdio>
#include <cstdlib>

/// A target states its invariants with this; the first breach ends the run with the condition's text.
#define INVARIANT(condition)                                                                                 \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            std::fprintf(stderr, "%s:%d: broken invariant: %s\n", __FILE__, __LINE__, #condition);           \
            std::abort();                                                                                    \
        }                                                                                                    \
    } while (false)
