#pragma once

#include <cstdint>

#include "core/native_types.h"

namespace QRN::Core {

/// A bare recursive critical section: storage without a constructor, so that its owner decides when it is initialised
/// and deleted. Use `Lockable` unless something else must be set up before the lock can be initialised.
struct CriticalSection {
    /// Makes the section usable.
    /// Returns: always 0.
    std::uint32_t Initialise();
    /// Waits until this thread owns the section. The owner may enter again.
    void Enter();
    /// Undoes one `Enter` of this thread.
    void Leave();
    /// Deletes an initialised section that no thread is in.
    void Delete();

    NativeCriticalSection native;
};

}  // namespace QRN::Core
