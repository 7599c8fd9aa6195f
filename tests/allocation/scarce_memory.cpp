#include "tests/allocation/scarce_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace Morquil::Test {
namespace {

constexpr long plenty = -1;

std::atomic<long> allocationsLeft{plenty};
std::atomic<bool> failuresLast{false};
std::atomic<bool> hasRunOut{false};
std::atomic<long> liveAllocations{0};
thread_local bool isExempt = false;

bool Grants() {
    if (isExempt || allocationsLeft == plenty) {
        return true;
    }
    if (allocationsLeft.load() == 0) {
        return !failuresLast && hasRunOut;
    }
    if (--allocationsLeft != 0) {
        return true;
    }
    hasRunOut = true;
    return false;
}

void* Allocate(std::size_t size) {
    void* const memory = Grants() ? std::malloc(size != 0 ? size : 1) : nullptr;
    if (memory != nullptr) {
        ++liveAllocations;
    }
    return memory;
}

}  // namespace

ScarceMemory::ScarceMemory(long index, bool lasting) {
    failuresLast = lasting;
    hasRunOut = false;
    allocationsLeft = index + 1;
}

ScarceMemory::~ScarceMemory() {
    allocationsLeft = plenty;
}

bool ScarceMemory::HasRunOut() {
    return hasRunOut;
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

}  // namespace Morquil::Test

// The whole program's, in place of the standard library's.
void* operator new(std::size_t size) {
    void* const memory = Morquil::Test::Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Morquil::Test::Allocate(size);
}
void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        --Morquil::Test::liveAllocations;
        std::free(memory);
    }
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    ::operator delete(memory);
}
