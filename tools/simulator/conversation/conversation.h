// Conversations between hosts and a device as a text file, one event on each line.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Simulator {

/// Something that happened between a host and the device.
struct ConversationEvent {
    enum class Kind { HostConnects, HostSays, DeviceSays, DeviceHangsUp, HostLeaves };

    std::chrono::milliseconds time{0};
    unsigned host = 0;
    Kind kind = Kind::HostConnects;
    std::string text;  // what is said

    bool operator==(const ConversationEvent&) const = default;
};

/// What stands at the top of a file: how it is to be read, as a comment.
std::string ConversationHeading();

/// The event as a line, with its line feed.
std::string ConversationLine(const ConversationEvent& event);

/// All events of a file in their order, or the first complaint, which begins with the number of its line.
struct ConversationReading {
    std::vector<ConversationEvent> events;
    std::string complaint;
};
ConversationReading ReadConversation(std::string_view text);

}  // namespace Morquil::Simulator
