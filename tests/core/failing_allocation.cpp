#include "tests/core/failing_allocation.h"

#include <atomic>
#include <new>

namespace {

std::atomic<bool> failNext{false};

}  // namespace

void QRN::Core::Testing::FailNextAllocation() {
    failNext = true;
}

// Replaces the standard library's; its partner, the ordinary delete, stays the library's own.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    if (failNext.exchange(false)) {
        return nullptr;
    }
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
