// Memory that runs out when the test says so.
#pragma once

namespace Morquil::Test {

/// Lets the allocation number `index` fail, counted from 0 and over all threads but those that are `Exempt`, and, with
/// `lasting`, all that follow. Ends with its scope.
class ScarceMemory {
public:
    ScarceMemory(long index, bool lasting);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

    /// Whether it has come to that.
    static bool HasRunOut();
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

/// How many allocations nobody has given back.
long LiveAllocations();

}  // namespace Morquil::Test
