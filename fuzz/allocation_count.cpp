#include "fuzz/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::uint64_t> allocations = 0;

}  // namespace

std::uint64_t Morquil::Fuzz::AllocationCount() {
    return allocations.load(std::memory_order_relaxed);
}

// Every form that pairs with one of the deletes below, so that no delete frees memory from another allocator.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return std::malloc(size != 0 ? size : 1);
}

void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
