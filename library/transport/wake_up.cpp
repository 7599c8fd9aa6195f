#include "transport/wake_up.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <cstdint>

#include "core/above_standard_streams.h"

namespace Morquil {

bool WakeUp::Create() {
    counter_ = FileDescriptor(QRN::Core::AboveStandardStreams(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)));
    return counter_.IsOpen();
}

bool WakeUp::Signal() const {
    constexpr std::uint64_t one = 1;
    // A full counter is already signalled.
    return write(counter_.Get(), &one, sizeof(one)) == sizeof(one) || errno == EAGAIN;
}

bool WakeUp::Take() const {
    std::uint64_t count = 0;
    return read(counter_.Get(), &count, sizeof(count)) == sizeof(count);
}

}  // namespace Morquil
