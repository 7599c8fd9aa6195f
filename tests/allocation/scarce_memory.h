// Memory that runs out when the test says so, and what of it is in use.
#pragma once

#include <cstddef>

namespace Morquil::Test {

/// Lets the allocation number `index` fail, counted from 0 and over all threads but those that are `Exempt`, and, with
/// `lasting`, all that follow. Ends with its scope.
class ScarceMemory {
public:
    /// An index that nothing comes to.
    static constexpr long never = 1'000'000;

    ScarceMemory(long index, bool lasting);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

    /// Whether it has come to that.
    static bool HasRunOut();
    /// Counts as one allocation. Returns: whether it shall succeed.
    static bool Grants();
};

/// While it lives, the thread's own allocations succeed and do not count: what a test does is no concern of the
/// library.
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

/// How many allocations that counted nobody has given back, and their bytes.
long LiveAllocations();
std::size_t LiveBytes();

}  // namespace Morquil::Test
