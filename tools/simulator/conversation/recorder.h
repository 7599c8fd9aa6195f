#pragma once

#include <functional>
#include <string>
#include <utility>

#include "simulator/conversation/conversation.h"
#include "simulator/link/station.h"

namespace Morquil::Simulator {

/// Records every event between hosts and another station as it happens.
class Recorder final : public Station {
public:
    /// `station` is not owned. `write` receives the heading, then one line for each event.
    Recorder(Station& station, std::function<void(const std::string&)> write);

    void Connect(HostId host, Moment now) override;
    void Disconnect(HostId host, Moment now) override;
    void Receive(HostId host, std::string_view bytes, Moment now) override;
    Delivery Take(HostId host, Moment now) override;
    std::optional<Moment> NextDelivery(HostId host) const override { return station_.NextDelivery(host); }
    bool MustDisconnect(HostId host) const override { return station_.MustDisconnect(host); }
    void Advance(Moment now) override { station_.Advance(now); }
    std::optional<Moment> NextDue() const override { return station_.NextDue(); }

private:
    void Write(HostId host, Moment now, ConversationEvent::Kind kind, std::string text = {});

    Station& station_;
    std::function<void(const std::string&)> write_;
    HostId hungUpOn_ = 0;  // the host that the device hung up on
};

}  // namespace Morquil::Simulator
