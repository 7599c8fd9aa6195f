#pragma once

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
    /// Replaces the observer; null removes it. Outside a callback it waits for calls of the replaced observer.
    /// Throws: std::bad_alloc; nothing has changed.
    void Set(IMorquilConsoleObserver* observer);
    /// Calls the observer. A line for which there is no memory is dropped.
    void CallWith(std::string_view line);

private:
    struct Target;
    class Call;

    QRN::Core::Lockable lock_;
    QRN::Core::Condition callEnded_;
    std::shared_ptr<Target> target_ GUARDED_BY(lock_);
};

}  // namespace Morquil
