#pragma once

#include <array>
#include <cstddef>

#include "transport/abstract_comms.h"

namespace Morquil {

/// The result of one check of the socket.
struct SocketState {
    bool readable = false;
    bool writable = false;
    bool gone = false;  ///< closed, broken or impossible to check
};

/// Events that one wait found and that have not been reported yet, oldest first.
class PendingEvents {
public:
    bool IsEmpty() const { return taken_ == count_; }
    void Clear() { taken_ = count_ = 0; }

    /// Call it on an empty queue only.
    void AddOne(CommsEvent event) {
        Clear();
        events_[count_++] = event;
    }

    /// Call it on an empty queue only. The end of the connection drops the events that were found with it.
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

    /// Call it on a non-empty queue only.
    CommsEvent TakeOldest() { return events_[taken_++]; }

private:
    std::array<CommsEvent, 2> events_{};
    std::size_t count_ = 0;
    std::size_t taken_ = 0;
};

}  // namespace Morquil
