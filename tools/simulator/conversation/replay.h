#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "simulator/conversation/conversation.h"
#include "simulator/link/station.h"

namespace Morquil::Simulator {

/// Replays the device's side of recorded conversations: the same bytes in the same pieces, each as long after the
/// previous event as recorded. Waits until the host has sent as many bytes as it had in the recording. The first host
/// to connect gets the first recorded host's conversation, and so on; after the last one, they start over.
class Replay final : public Station {
public:
    /// `onDifference` is called once for each host whose bytes differ from the recording.
    Replay(const std::vector<ConversationEvent>& events, std::function<void(const std::string&)> onDifference);

    void Connect(HostId host, Moment now) override;
    void Disconnect(HostId host, Moment now) override;
    void Receive(HostId host, std::string_view bytes, Moment now) override;
    Delivery Take(HostId host, Moment now) override;
    std::optional<Moment> NextDelivery(HostId host) const override;
    bool MustDisconnect(HostId host) const override { return hosts_.at(host).unread.size() > unexpectedLimit; }
    void Advance(Moment /*now*/) override {}
    std::optional<Moment> NextDue() const override { return std::nullopt; }

private:
    using Conversation = std::vector<ConversationEvent>;

    /// A host that sends this much more than is recorded is disconnected: memory is limited.
    static constexpr std::size_t unexpectedLimit = std::size_t{4} * 1024 * 1024;

    struct Progress {
        const Conversation* conversation = nullptr;  // null if nothing is recorded
        std::size_t next = 0;                        // the index of the next event
        Moment happened{0};                          // when the previous event happened in this replay
        Moment recorded{0};                          // when it happened in the recording
        Moment lastReceived{0};                      // when the host last sent something
        std::string unread;                          // bytes of the host that are not compared yet
        bool differs = false;

        const ConversationEvent* Next() const;
        void Pass(Moment now);
    };

    void PassHostEvents(HostId host, Progress& progress);
    void Compare(HostId host, Progress& progress, std::string_view recorded);

    std::vector<Conversation> conversations_;
    std::function<void(const std::string&)> onDifference_;
    std::map<HostId, Progress> hosts_;
    std::size_t connections_ = 0;
};

}  // namespace Morquil::Simulator
