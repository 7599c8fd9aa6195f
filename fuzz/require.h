#pragma once

#include <cstdio>
#include <cstdlib>

namespace Morquil::Fuzz {

/// Ends the program when a promise is broken, which a fuzzer reports as a finding. Unlike assert() it works in every
/// build.
inline void Require(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

}  // namespace Morquil::Fuzz
