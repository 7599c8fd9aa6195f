#include "core/wait_graph.h"

#include "core/intrusive_list.h"
#include "core/static_lock.h"

namespace QRN::Core {
namespace {

using Edge = JoinScope::Edge;

constinit StaticLock edgesLock;
constinit IntrusiveList<Edge> edges GUARDED_BY(edgesLock);  // the latest one first

// Adds an edge and links it to the others.
void Add(Edge& added) REQUIRES(edgesLock) {
    for (Edge* edge = edges.First(); edge != nullptr; edge = edge->next) {
        if (edge->target == added.waiter) {
            edge->onward = &added;
        }
        if (edge->waiter == added.waiter && added.sibling == nullptr) {
            added.sibling = edge;
        }
        if (edge->waiter == added.target && added.onward == nullptr) {
            added.onward = edge;
        }
    }
    edges.Add(added);
}

void Remove(Edge& removed) REQUIRES(edgesLock) {
    edges.Remove(removed);
    for (Edge* edge = edges.First(); edge != nullptr; edge = edge->next) {
        if (edge->onward == &removed) {
            edge->onward = removed.sibling;
        }
        if (edge->sibling == &removed) {
            edge->sibling = removed.sibling;
        }
    }
}

// Marks every edge as not reached. Returns the thread's latest wait, or null.
Edge* BeginSearch(ThreadId thread) REQUIRES(edgesLock) {
    Edge* latest = nullptr;
    for (Edge* edge = edges.First(); edge != nullptr; edge = edge->next) {
        edge->isReached = false;
        if (edge->waiter == thread && latest == nullptr) {
            latest = edge;
        }
    }
    return latest;
}

void Reach(Edge* edge, Edge*& pending) REQUIRES(edgesLock) {
    if (edge != nullptr && !edge->isReached) {
        edge->isReached = true;
        edge->pending = pending;
        pending = edge;
    }
}

// Whether `from` is `to` or waits for it through any number of others. Visits each edge once.
bool WaitsFor(ThreadId from, ThreadId to) REQUIRES(edgesLock) {
    bool found = from == to;
    Edge* pending = nullptr;
    Reach(BeginSearch(from), pending);
    while (pending != nullptr && !found) {
        Edge* const edge = pending;
        pending = edge->pending;
        found = edge->target == to;
        Reach(edge->sibling, pending);
        Reach(edge->onward, pending);
    }
    return found;
}

}  // namespace

JoinScope::JoinScope(ThreadId target) : edge_{.waiter = CurrentThreadId(), .target = target} {
    const StaticLockHold hold(edgesLock);
    circular_ = target != 0 && WaitsFor(target, edge_.waiter);
    if (!circular_) {
        Add(edge_);
    }
}

JoinScope::~JoinScope() {
    if (!circular_) {
        const StaticLockHold hold(edgesLock);
        Remove(edge_);
    }
}

}  // namespace QRN::Core
