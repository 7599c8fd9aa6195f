#pragma once

#include <array>
#include <cstddef>

#include "transport/abstract_comms.h"

namespace Morquil {

/// What one look at the socket has found.
struct SocketState {
    bool readable = false;
    bool writable = false;
    bool gone = false;  ///< closed, broken or not to be looked at
};

/// Events that one wait found and that have not been told yet, oldest first.
class PendingEvents {
public:
    bool IsEmpty() const { return told_ == count_; }
    void Clear() { told_ = count_ = 0; }

    /// To be called on an empty queue only.
    void AddOne(CommsEvent event) {
        Clear();
        events_[count_++] = event;
    }

    /// To be called on an empty queue only. An end of the connection drops what was found with it.
    void AddSocket(const SocketState& state) {
        Clear();
        if (state.gone) {
            AddOne(CommsEvent::SocketError);
            return;
        }
        if (state.readable) {
            events_[count_++] = CommsEvent::Readable;
        }
        if (state.writable) {
            events_[count_++] = CommsEvent::Writable;
        }
    }

    /// To be called on a queue that is not empty.
    CommsEvent TakeOldest() { return events_[told_++]; }

private:
    std::array<CommsEvent, 2> events_{};
    std::size_t count_ = 0;
    std::size_t told_ = 0;
};

}  // namespace Morquil
