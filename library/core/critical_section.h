#pragma once

#include <cstdint>

#include "core/native_types.h"

namespace QRN::Core {

/// A bare recursive critical section: storage without a constructor, so that its owner decides when it begins and ends.
/// Use `Lockable`, unless something must be set up before it can be constructed.
struct CriticalSection {
    /// Makes the section usable.
    /// Returns: always 0.
    std::uint32_t Initialise();
    /// Waits until this thread has the section; the thread that has it may enter again.
    void Enter();
    /// Gives one `Enter` of this thread back.
    void Leave();
    /// Ends an initialised section that no thread is in.
    void Delete();

    NativeCriticalSection native;
};

}  // namespace QRN::Core
