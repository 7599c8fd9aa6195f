#include "transport/console_observer.h"

#include <utility>

#include "core/callback_scope.h"
#include "core/lock.h"
#include "platform/text.h"

namespace Morquil {

using QRN::Core::CallbackScope;
using QRN::Core::Lock;

/// An observer and one reference to it.
class ConsoleObserver::Target {
public:
    explicit Target(IMorquilConsoleObserver& called) : observer(called) { observer.AddRef(); }
    ~Target() { observer.Release(); }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    IMorquilConsoleObserver& observer;
    // The lock of `ConsoleObserver` guards these.
    unsigned calls = 0;         ///< in progress
    bool endsWithCall = false;  ///< replaced; the last call deletes it
};

ConsoleObserver::ConsoleObserver(std::atomic<_MorquilConsoleMode>& mode) : mode_(mode) {}
ConsoleObserver::~ConsoleObserver() = default;

void ConsoleObserver::Set(_MorquilConsoleMode mode, IMorquilConsoleObserver* observer) {
    std::unique_ptr<Target> target = observer != nullptr ? std::make_unique<Target>(*observer) : nullptr;
    Lock lock(lock_);
    mode_ = mode;
    std::swap(target_, target);  // from here on it is the replaced one; deleted after the lock
    if (target == nullptr || target->calls == 0) {
        return;
    }
    if (CallbackScope::OnThisThread()) {
        target.release()->endsWithCall = true;
        return;
    }
    while (target->calls != 0) {
        callEnded_.Wait(lock_);
    }
}

bool ConsoleObserver::CallWith(std::string_view line) {
    Target* const target = BeginCall();
    if (target == nullptr) {
        return false;
    }
    if (const BSTR text = BstrFromUtf8(line)) {
        const CallbackScope inCallback;
        target->observer.Line(text);
        SysFreeString(text);
    }
    EndCall(*target);
    return true;
}

/// The target lives until `EndCall`.
ConsoleObserver::Target* ConsoleObserver::BeginCall() {
    Lock lock(lock_);
    if (target_ != nullptr) {
        ++target_->calls;
    }
    return target_.get();
}

void ConsoleObserver::EndCall(Target& target) {
    std::unique_ptr<Target> ended;  // deleted after the lock
    Lock lock(lock_);
    --target.calls;
    if (target.endsWithCall && target.calls == 0) {
        ended.reset(&target);
    }
    callEnded_.WakeAll();
}

}  // namespace Morquil
