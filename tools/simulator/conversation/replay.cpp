#include "simulator/conversation/replay.h"

#include <algorithm>
#include <utility>

#include "simulator/text/escaped_text.h"

namespace Morquil::Simulator {

using Kind = ConversationEvent::Kind;

namespace {

bool IsDevices(Kind kind) {
    return kind == Kind::DeviceSays || kind == Kind::DeviceHangsUp;
}

}  // namespace

Replay::Replay(const std::vector<ConversationEvent>& events, std::function<void(const std::string&)> onDifference)
    : onDifference_(std::move(onDifference)) {
    std::map<HostId, std::size_t> conversationOf;
    for (const ConversationEvent& event : events) {
        if (event.kind == Kind::HostConnects) {
            conversationOf[event.host] = conversations_.size();
            conversations_.emplace_back();
        }
        conversations_[conversationOf.at(event.host)].push_back(event);
    }
}

const ConversationEvent* Replay::Progress::Next() const {
    return conversation != nullptr && next < conversation->size() ? &(*conversation)[next] : nullptr;
}

void Replay::Progress::Pass(Moment now) {
    happened = now;
    recorded = Next()->time;
    ++next;
}

void Replay::Connect(HostId host, Moment now) {
    Progress& progress = hosts_[host];
    if (!conversations_.empty()) {
        progress.conversation = &conversations_[connections_++ % conversations_.size()];
        progress.Pass(now);
    }
    PassHostEvents(host, progress);
}

void Replay::Disconnect(HostId host, Moment /*now*/) {
    hosts_.erase(host);
}

void Replay::Receive(HostId host, std::string_view bytes, Moment now) {
    Progress& progress = hosts_.at(host);
    progress.unread += bytes;
    progress.lastReceived = now;
    PassHostEvents(host, progress);
}

void Replay::PassHostEvents(HostId host, Progress& progress) {
    const ConversationEvent* next = progress.Next();
    while (next != nullptr && next->kind == Kind::HostSays && progress.unread.size() >= next->text.size()) {
        Compare(host, progress, next->text);
        progress.unread.erase(0, next->text.size());
        progress.Pass(std::max(progress.happened, progress.lastReceived));
        next = progress.Next();
    }
    if (next == nullptr || next->kind == Kind::HostLeaves) {
        progress.unread.clear();  // no event depends on it any more
    }
}

void Replay::Compare(HostId host, Progress& progress, std::string_view recorded) {
    const std::string_view sent = std::string_view(progress.unread).substr(0, recorded.size());
    if (sent != recorded && !std::exchange(progress.differs, true)) {
        onDifference_("host " + std::to_string(host) + " sent " + Escaped(sent) + ", but the recording has " +
                      Escaped(recorded));
    }
}

Delivery Replay::Take(HostId host, Moment now) {
    const std::optional<Moment> due = NextDelivery(host);
    if (!due || *due > now) {
        return {};
    }
    Progress& progress = hosts_.at(host);
    const ConversationEvent& event = *progress.Next();
    // Counted from its due time, so that delays do not add up.
    progress.Pass(*due);
    PassHostEvents(host, progress);
    return {.bytes = event.text, .hangUp = event.kind == Kind::DeviceHangsUp};
}

std::optional<Station::Moment> Replay::NextDelivery(HostId host) const {
    const Progress& progress = hosts_.at(host);
    const ConversationEvent* next = progress.Next();
    if (next == nullptr || !IsDevices(next->kind)) {
        return std::nullopt;
    }
    return progress.happened + (next->time - progress.recorded);
}

}  // namespace Morquil::Simulator
