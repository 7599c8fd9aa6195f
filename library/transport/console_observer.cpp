#include "transport/console_observer.h"

#include <utility>

#include "core/callback_scope.h"
#include "core/lock.h"
#include "platform/text.h"

namespace Morquil {

using QRN::Core::CallbackScope;
using QRN::Core::Lock;

/// An observer, one reference to it, and the number of its calls in progress.
struct ConsoleObserver::Target {
    explicit Target(IMorquilConsoleObserver& called) : observer(called) { observer.AddRef(); }
    ~Target() { observer.Release(); }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    IMorquilConsoleObserver& observer;
    unsigned calls = 0;
};

void ConsoleObserver::Set(IMorquilConsoleObserver* observer) {
    // Released at the end, without the lock.
    std::shared_ptr<Target> replaced = observer != nullptr ? std::make_shared<Target>(*observer) : nullptr;
    Lock lock(lock_);
    std::swap(target_, replaced);
    const bool mayWait = replaced != nullptr && !CallbackScope::OnThisThread();
    while (mayWait && replaced->calls != 0) {
        callEnded_.Wait(lock_);
    }
}

void ConsoleObserver::CallWith(std::string_view line) {
    std::shared_ptr<Target> target;
    {
        Lock lock(lock_);
        target = target_;
        if (target == nullptr) {
            return;
        }
        ++target->calls;
    }
    if (const BSTR text = BstrFromUtf8(line)) {
        const CallbackScope inCallback;
        target->observer.Line(text);
        SysFreeString(text);
    }
    Lock lock(lock_);
    --target->calls;
    callEnded_.WakeAll();
}

}  // namespace Morquil
