#pragma once

#include <chrono>
#include <cstddef>

namespace Morquil::Testing {

/// How many descriptors or handles this process has open.
std::size_t OpenHandleCount();

/// How many threads this process has.
std::size_t ThreadCount();

/// What the system itself creates in a process at some time and keeps.
struct SystemsOwn {
    std::size_t handles;
    std::size_t threads;
};
extern const SystemsOwn systemsOwn;

/// How many handles an abandoned attempt to connect keeps after the device has hung up.
extern const std::size_t handlesOfAnAttempt;

/// How many handles each load and unload of the library keeps.
extern const std::size_t handlesOfAnUnloading;

/// How many bytes of memory this process occupies.
std::size_t ProcessMemory();

/// How much processor time the threads of this process have used.
std::chrono::nanoseconds ProcessorTime();

}  // namespace Morquil::Testing
