#pragma once

#include "core/thread.h"

namespace QRN::Core {

/// Records, while the scope lasts, that the calling thread waits for the thread `target` to end. Two threads that wait
/// for each other would wait forever, so the later one finds its wait circular and must not wait:
///
///     JoinScope scope(connectionThreadId);
///     if (!scope.IsCircular()) {
///         JoinThread(connectionThread);
///     }
///
/// Allocates nothing, and takes time in proportion to the number of waits. The answer is final: if another thread would
/// close a circle later, that thread is the one that must not wait.
class JoinScope {
public:
    /// A `target` of 0 is no thread and never circular.
    explicit JoinScope(ThreadId target);
    ~JoinScope();
    JoinScope(const JoinScope&) = delete;
    JoinScope& operator=(const JoinScope&) = delete;

    /// Whether `target` is this thread or waits for it, directly or through any number of other threads.
    bool IsCircular() const { return circular_; }

    /// One thread's wait for another, and the edges that a search follows from there.
    struct Edge {
        ThreadId waiter = 0;
        ThreadId target = 0;
        Edge* onward = nullptr;   ///< the target's latest wait, if the target itself waits
        Edge* sibling = nullptr;  ///< the same waiter's previous wait
        Edge* pending = nullptr;  ///< used by a search: the next edge to visit
        bool isReached = false;   ///< used by a search
        Edge* previous = nullptr;
        Edge* next = nullptr;
    };

private:
    Edge edge_;
    bool circular_;
};

}  // namespace QRN::Core
