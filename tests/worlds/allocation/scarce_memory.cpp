#include "tests/worlds/allocation/scarce_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/worlds/allocation/failing_system.h"

namespace Morquil::Testing {
namespace {

constexpr long noAllocation = -1;

std::atomic<long> failingAllocation{noAllocation};
std::atomic<long> nextAllocation{0};
std::atomic<bool> failuresLast{false};
std::atomic<bool> hasRunOut{false};
std::atomic<long> liveAllocations{0};
std::atomic<std::size_t> liveBytes{0};
thread_local bool isExempt = false;

// Precedes every allocation: the thread that frees it may be exempt even if the one that allocated it was not.
struct alignas(std::max_align_t) Header {
    std::size_t size;
    bool counts;
};

void* Allocate(std::size_t size) {
    void* const memory = ScarceMemory::Grants() ? PlainMemory(sizeof(Header) + size) : nullptr;
    if (memory == nullptr) {
        return nullptr;
    }
    auto* const header = new (memory) Header{size, !isExempt};
    if (header->counts) {
        ++liveAllocations;
        liveBytes += size;
    }
    return header + 1;
}

void Free(void* memory) {
    if (memory == nullptr) {
        return;
    }
    Header* const header = static_cast<Header*>(memory) - 1;
    if (header->counts) {
        --liveAllocations;
        liveBytes -= header->size;
    }
    std::free(header);
}

}  // namespace

ScarceMemory::ScarceMemory(long index, bool lasting) {
    failuresLast = lasting;
    hasRunOut = false;
    nextAllocation = 0;
    failingAllocation = index;
}

ScarceMemory::~ScarceMemory() {
    failingAllocation = noAllocation;
}

bool ScarceMemory::HasRunOut() {
    return hasRunOut;
}

bool ScarceMemory::Grants() {
    const long failing = failingAllocation;
    // In this order: creating thread-local variables at first use may allocate here, too.
    if (failing == noAllocation || isExempt) {
        return true;
    }
    const long number = nextAllocation++;
    if (number < failing || (number > failing && !failuresLast)) {
        return true;
    }
    hasRunOut = true;
    return false;
}

Exempt::Exempt(bool exempt) : before_(isExempt) {
    isExempt = exempt;
}

Exempt::~Exempt() {
    isExempt = before_;
}

long LiveAllocations() {
    return liveAllocations;
}

std::size_t LiveBytes() {
    return liveBytes;
}

}  // namespace Morquil::Testing

// For the whole program, in place of the standard library's.
void* operator new(std::size_t size) {
    void* const memory = Morquil::Testing::Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Morquil::Testing::Allocate(size);
}
void operator delete(void* memory) noexcept {
    Morquil::Testing::Free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    Morquil::Testing::Free(memory);
}
