// What a piece of the library's life leaves behind.
#pragma once

#include <cstddef>
#include <string>

#include "tests/allocation/failing_system.h"
#include "tests/allocation/scarce_memory.h"
#include "tests/support/process_counts.h"

namespace Morquil::Test {

/// What the library and the process hold at the moment.
struct Holdings {
    long allocations = LiveAllocations();
    std::size_t bytes = LiveBytes();
    long texts = LiveTexts();
    std::size_t threads = Testing::ThreadCount();
    std::size_t handles = Testing::OpenHandleCount();
};

/// Waits up to 5 s until no more is held than `before`: the thread that does the library's last work goes when the
/// system lets it, and nobody tells. That may have held something when `before` was taken, which then becomes less
/// here. Returns: what is still held; empty when it has come to that.
std::string LeftSince(Holdings& before);

}  // namespace Morquil::Test
