#pragma once

#include "core/thread.h"

namespace QRN::Core {

/// Marks its thread as being inside a callback of the host while the scope lasts. Scopes may nest. Allocates nothing.
/// Uses no thread-local storage, which is best avoided in a library that may be loaded late.
class CallbackScope {
public:
    CallbackScope();
    ~CallbackScope();
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;

    /// Whether the calling thread is inside a callback.
    static bool OnThisThread();

    /// One entry of the list of all scopes.
    struct Node {
        ThreadId thread = 0;
        Node* previous = nullptr;
        Node* next = nullptr;
    };

private:
    Node node_;
};

}  // namespace QRN::Core
