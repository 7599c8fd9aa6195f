#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace Morquil::Simulator {

/// Counts lines that have been read but not carried out, and blocks their reader at a limit.
/// Threads: any.
class PendingLines {
public:
    explicit PendingLines(std::size_t limit) : limit_(limit) {}

    /// Counts a line. Waits first while the limit is reached.
    /// Returns: false, at once, after `Close`.
    bool Add();
    void Remove(std::size_t count);
    /// Ends all waits. Nothing can be added any more.
    void Close();

private:
    const std::size_t limit_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t count_ = 0;
    bool isClosed_ = false;
};

}  // namespace Morquil::Simulator
