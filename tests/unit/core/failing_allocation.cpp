#include "tests/unit/core/failing_allocation.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<bool> failNext{false};

}  // namespace

void Morquil::Testing::FailNextAllocation() {
    failNext = true;
}

// The whole set replaces the standard library's: a sanitizer's set does not mix with a part of it.
void* operator new(std::size_t size) {
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return failNext.exchange(false) ? nullptr : std::malloc(size != 0 ? size : 1);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
