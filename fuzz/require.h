#pragma once

#include <cstdio>
#include <cstdlib>

namespace Morquil::Fuzz {

/// Ends the program when a promise does not hold: to a fuzzer that is a finding. Unlike assert() in every build.
inline void Require(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

}  // namespace Morquil::Fuzz
