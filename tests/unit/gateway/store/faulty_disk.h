// A disk that a test fills up, or makes read-only. Every database of the program is on it.
#pragma once

#include <functional>

namespace Morquil::Testing {

class FaultyDisk {
public:
    FaultyDisk();
    ~FaultyDisk();
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;

    enum class Fault { None, Full, ReadOnly };
    /// Threads: any.
    static void Set(Fault fault);
};

}  // namespace Morquil::Testing
