#include "core/callback_scope.h"

#include "core/intrusive_list.h"
#include "core/static_lock.h"

namespace QRN::Core {
namespace {

constinit StaticLock scopesLock;
constinit IntrusiveList<CallbackScope::Node> scopes GUARDED_BY(scopesLock);

}  // namespace

CallbackScope::CallbackScope() {
    node_.thread = CurrentThreadId();
    const StaticLockHold hold(scopesLock);
    scopes.Add(node_);
}

CallbackScope::~CallbackScope() {
    const StaticLockHold hold(scopesLock);
    scopes.Remove(node_);
}

bool CallbackScope::OnThisThread() {
    const ThreadId self = CurrentThreadId();
    const StaticLockHold hold(scopesLock);
    for (const Node* node = scopes.First(); node != nullptr; node = node->next) {
        if (node->thread == self) {
            return true;
        }
    }
    return false;
}

}  // namespace QRN::Core
