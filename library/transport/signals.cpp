#include "transport/signals.h"

#include <array>

namespace Morquil {
namespace {

struct TakenAs {
    CommsSignal signal;
    CommsEvent event;
};

// In order of priority.
constexpr std::array signalEvents{TakenAs{signalStop, CommsEvent::StopRequested},
                                  TakenAs{signalSend, CommsEvent::SendRequested},
                                  TakenAs{signalUser, CommsEvent::UserSignal}};

constexpr std::uint32_t BitOf(CommsSignal signal) {
    return std::uint32_t{1} << signal;
}

}  // namespace

bool Signals::Raise(CommsSignal which) {
    const bool isNew = (given_.fetch_or(BitOf(which)) & BitOf(which)) == 0;
    return isNew && waiting_;
}

bool Signals::Has(CommsSignal which) const {
    return (given_ & BitOf(which)) != 0;
}

std::optional<CommsEvent> Signals::TakeFirst() {
    for (const TakenAs& taken : signalEvents) {
        if (Take(taken.signal)) {
            return taken.event;
        }
    }
    return std::nullopt;
}

bool Signals::Take(CommsSignal which) {
    return Has(which) && (given_.fetch_and(~BitOf(which)) & BitOf(which)) != 0;
}

}  // namespace Morquil
