#pragma once

#include "core/thread.h"

namespace QRN::Core {

/// Says, as long as it stands on the stack, that the calling thread waits for the thread `target` to end. Two threads
/// that wait for each other would wait for ever, so the one that comes last is told and must not wait:
///
///     JoinScope scope(connectionThreadId);
///     if (!scope.IsCircular()) {
///         JoinThread(connectionThread);
///     }
///
/// Allocates nothing. The answer is final: whoever would close the circle later is told then.
class JoinScope {
public:
    /// `target` 0 stands for no thread and is never circular.
    explicit JoinScope(ThreadId target);
    ~JoinScope();
    JoinScope(const JoinScope&) = delete;
    JoinScope& operator=(const JoinScope&) = delete;

    /// Whether `target` is this thread or waits, through however many others, for this thread.
    bool IsCircular() const { return circular_; }

    /// One thread that waits for another.
    struct Edge {
        ThreadId waiter = 0;
        ThreadId target = 0;
        bool reached = false;  ///< used by the search only
        Edge* previous = nullptr;
        Edge* next = nullptr;
    };

private:
    Edge edge_;
    bool circular_;
};

}  // namespace QRN::Core
