#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "simulator/conversation/conversation.h"
#include "simulator/link/station.h"

namespace Morquil::Simulator {

/// Plays the device's side of recorded conversations: the same bytes in the same pieces, each as long after the event
/// before it as it was. Waits for as many bytes of the host as had come at that point. The first host that connects
/// gets the conversation of the first that is recorded, and so on; after the last they start over.
class Replay final : public Station {
public:
    /// `onDifference` is told, once for each host, when a host says something else than is recorded.
    Replay(const std::vector<ConversationEvent>& events, std::function<void(const std::string&)> onDifference);

    void Connect(HostId host, Moment now) override;
    void Disconnect(HostId host, Moment now) override;
    void Receive(HostId host, std::string_view bytes, Moment now) override;
    Delivery Take(HostId host, Moment now) override;
    std::optional<Moment> NextDelivery(HostId host) const override;
    bool GivesUp(HostId host) const override { return hosts_.at(host).unread.size() > unheardLimit; }
    void Advance(Moment /*now*/) override {}
    std::optional<Moment> NextDue() const override { return std::nullopt; }

private:
    using Conversation = std::vector<ConversationEvent>;

    /// A host that says this much more than is recorded is let go: memory has an end.
    static constexpr std::size_t unheardLimit = std::size_t{4} * 1024 * 1024;

    struct Progress {
        const Conversation* conversation = nullptr;  // none when nothing is recorded
        std::size_t next = 0;                        // the event that comes next
        Moment happened{0};                          // the event before it, now
        Moment recorded{0};                          // and when it was recorded
        Moment heard{0};                             // when the host last said something
        std::string unread;                          // of what the host said; compared up to here
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
