#pragma once

#include "core/thread.h"

namespace QRN::Core {

/// Marks, as long as it stands on the stack, that its thread is inside a callback of the host. Scopes may nest.
/// Allocates nothing and uses no thread-local storage, which a library that is loaded late had better do without.
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
