#include "core/wait_graph.h"

#include "core/intrusive_list.h"
#include "core/static_lock.h"

namespace QRN::Core {
namespace {

constinit StaticLock edgesLock;
constinit IntrusiveList<JoinScope::Edge> edges GUARDED_BY(edgesLock);

bool IsReached(ThreadId thread, ThreadId from) REQUIRES(edgesLock) {
    if (thread == from) {
        return true;
    }
    for (const JoinScope::Edge* edge = edges.First(); edge != nullptr; edge = edge->next) {
        if (edge->reached && edge->target == thread) {
            return true;
        }
    }
    return false;
}

// Whether `from` is `to` or waits for it through any number of others. Goes round until nothing new is reached, which
// takes no memory; there are never more than a handful of edges.
bool WaitsFor(ThreadId from, ThreadId to) REQUIRES(edgesLock) {
    for (JoinScope::Edge* edge = edges.First(); edge != nullptr; edge = edge->next) {
        edge->reached = false;
    }
    for (bool grows = true; grows;) {
        grows = false;
        for (JoinScope::Edge* edge = edges.First(); edge != nullptr; edge = edge->next) {
            if (!edge->reached && IsReached(edge->waiter, from)) {
                edge->reached = grows = true;
            }
        }
    }
    return IsReached(to, from);
}

}  // namespace

JoinScope::JoinScope(ThreadId target) : edge_{.waiter = CurrentThreadId(), .target = target} {
    const StaticLockHold hold(edgesLock);
    circular_ = target != 0 && WaitsFor(target, edge_.waiter);
    if (!circular_) {
        edges.Add(edge_);
    }
}

JoinScope::~JoinScope() {
    if (!circular_) {
        const StaticLockHold hold(edgesLock);
        edges.Remove(edge_);
    }
}

}  // namespace QRN::Core
