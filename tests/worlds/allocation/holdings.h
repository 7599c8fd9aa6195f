// What a part of the library's life leaks.
#pragma once

#include <cstddef>
#include <string>

#include "tests/kit/process_counts.h"
#include "tests/worlds/allocation/failing_system.h"
#include "tests/worlds/allocation/scarce_memory.h"

namespace Morquil::Testing {

/// What the library and the process hold at the moment.
struct Holdings {
    long allocations = LiveAllocations();
    std::size_t bytes = LiveBytes();
    long texts = LiveTexts();
    std::size_t threads = ThreadCount();
    std::size_t handles = OpenHandleCount();
};

/// Waits up to 5 s until no more is held than `before`: the library's last thread ends when the system lets it, without
/// notice. It may have held something when `before` was taken; `before` is lowered then. Returns: what is still held
/// beyond that; empty when nothing is.
std::string LeakedSince(Holdings& before);

}  // namespace Morquil::Testing
