// Conversations between hosts and a device as a text file, with one event on each line.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Simulator {

/// An event between a host and the device.
struct ConversationEvent {
    enum class Kind { HostConnects, HostSays, DeviceSays, DeviceHangsUp, HostLeaves };

    std::chrono::milliseconds time{0};
    unsigned host = 0;
    Kind kind = Kind::HostConnects;
    std::string text;  // what is sent

    bool operator==(const ConversationEvent&) const = default;
};

/// The first lines of a file: a comment that explains how to read it.
std::string ConversationHeading();

/// The event as a line, with its line feed.
std::string ConversationLine(const ConversationEvent& event);

/// All events of a file in order, or the first error, which begins with its line number.
struct ConversationReading {
    std::vector<ConversationEvent> events;
    std::string error;
};
ConversationReading ReadConversation(std::string_view text);

}  // namespace Morquil::Simulator
