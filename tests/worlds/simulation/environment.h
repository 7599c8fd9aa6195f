#pragma once

#include <cstdint>
#include <cstdlib>

namespace Morquil::Testing::Worlds {

/// The number that the environment variable `name` holds; `fallback` if it is not set.
inline std::uint64_t FromEnvironment(const char* name, std::uint64_t fallback) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): this program never changes its environment
    const char* const text = std::getenv(name);
    return text != nullptr ? std::strtoull(text, nullptr, 10) : fallback;
}

}  // namespace Morquil::Testing::Worlds
