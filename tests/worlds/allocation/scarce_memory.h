// Memory that runs out when the test says so, and how much of it is in use.
#pragma once

#include <cstddef>

namespace Morquil::Testing {

/// Makes allocation number `index` fail, counted from 0 over all threads that are not `Exempt`, and, with `lasting`,
/// all that follow. Ends with its scope.
class ScarceMemory {
public:
    /// An index that is never reached.
    static constexpr long never = 1'000'000;

    ScarceMemory(long index, bool lasting);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

    /// Whether that allocation has happened.
    static bool HasRunOut();
    /// Counts as one allocation. Returns: whether it should succeed.
    static bool Grants();
};

/// While it lives, the thread's own allocations succeed and do not count: a test's own allocations are not the
/// library's.
class Exempt {
public:
    explicit Exempt(bool exempt = true);
    ~Exempt();
    Exempt(const Exempt&) = delete;
    Exempt& operator=(const Exempt&) = delete;

private:
    bool before_;
};

/// Runs `call` as a host does, on memory that may run out.
template <class Call>
auto InTheLibrary(Call call) {
    const Exempt library(false);
    return call();
}

/// How many counted allocations have not been freed, and their bytes.
long LiveAllocations();
std::size_t LiveBytes();

}  // namespace Morquil::Testing
