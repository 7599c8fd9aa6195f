#pragma once

#include "transport/file_descriptor.h"

namespace Morquil {

/// A signal that poll can wait for. Taking it resets it. Any thread may signal. Several signals that have not been
/// taken count as one.
class WakeUp {
public:
    /// Returns: false when the system has no free descriptor.
    bool Create();
    /// Returns: false before `Create`.
    bool Signal() const;
    /// Takes the signal.
    /// Returns: whether there was one.
    bool Take() const;

    bool IsOpen() const { return counter_.IsOpen(); }
    int Descriptor() const { return counter_.Get(); }

private:
    FileDescriptor counter_;
};

}  // namespace Morquil
