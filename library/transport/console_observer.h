#pragma once

#include <atomic>
#include <memory>
#include <string_view>

#include "MorquilDelivery.h"
#include "core/condition.h"
#include "core/lockable.h"
#include "core/thread_safety.h"

namespace Morquil {

/// The host's object that receives the library's text, if there is one. No lock is held while it is called.
/// Threads: any.
class ConsoleObserver {
public:
    /// `mode` says where text goes. It changes together with the observer.
    explicit ConsoleObserver(std::atomic<_MorquilConsoleMode>& mode);
    ~ConsoleObserver();
    ConsoleObserver(const ConsoleObserver&) = delete;
    ConsoleObserver& operator=(const ConsoleObserver&) = delete;

    /// Replaces the observer and releases it; null removes it. Outside a callback it waits for calls of the replaced
    /// observer first; inside one, the last of those calls releases it.
    /// Throws: std::bad_alloc; nothing has changed.
    void Set(_MorquilConsoleMode mode, IMorquilConsoleObserver* observer);
    /// Calls the observer. A line for which there is no memory is dropped.
    /// Returns: false if there is no observer.
    bool CallWith(std::string_view line);

private:
    class Target;

    Target* BeginCall();
    void EndCall(Target& target);

    std::atomic<_MorquilConsoleMode>& mode_;
    QRN::Core::Lockable lock_;
    QRN::Core::Condition callEnded_;
    std::unique_ptr<Target> target_ GUARDED_BY(lock_);
};

}  // namespace Morquil
