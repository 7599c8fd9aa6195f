#pragma once

#include "core/thread.h"

namespace QRN::Core {

/// Says, as long as it stands on the stack, that the calling thread waits for the thread `target` to end. Two threads
/// that wait for each other would wait forever, so the later one learns it and must not wait:
///
///     JoinScope scope(connectionThreadId);
///     if (!scope.IsCircular()) {
///         JoinThread(connectionThread);
///     }
///
/// Allocates nothing, and takes time in proportion to the number of waits. The answer is final: a thread that would
/// close a circle later learns it then.
class JoinScope {
public:
    /// `target` 0 stands for no thread and is never circular.
    explicit JoinScope(ThreadId target);
    ~JoinScope();
    JoinScope(const JoinScope&) = delete;
    JoinScope& operator=(const JoinScope&) = delete;

    /// Whether `target` is this thread or waits, through however many others, for this thread.
    bool IsCircular() const { return circular_; }

    /// One thread that waits for another, and where a search goes from there.
    struct Edge {
        ThreadId waiter = 0;
        ThreadId target = 0;
        Edge* onward = nullptr;   ///< the latest wait of the target, if it waits itself
        Edge* sibling = nullptr;  ///< the wait of the same waiter before this one
        Edge* pending = nullptr;  ///< used by a search: the next one to look at
        bool isReached = false;   ///< used by a search
        Edge* previous = nullptr;
        Edge* next = nullptr;
    };

private:
    Edge edge_;
    bool circular_;
};

}  // namespace QRN::Core
