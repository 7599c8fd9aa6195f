// What a live view shows.
#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "command/changes/local_time.h"
#include "command/output/terminal.h"
#include "command/properties/value.h"

namespace Morquil::Command {

enum class LinkState { Connecting, Connected, Lost, Unreachable };

/// A device, and what is known of it now.
struct DeviceView {
    std::string address;
    LinkState link = LinkState::Connecting;
    WallClock::time_point since = {};  // of this state of the link
    std::string cause = {};            // why it is not connected

    // While it is connected:
    std::string name = {};
    std::string input = {};
    std::string output = {};
    std::string reference = {};
    std::string locks = {};
    bool hasSignal = true;
    std::vector<std::pair<std::string, std::string>> status = {};  // in full
};

/// A change of a value or of the link.
struct Happening {
    WallClock::time_point time;
    std::string address;
    std::string text;
    Style style = Style::Plain;
    Json json = {};  // the same for programs
};

struct View {
    WallClock::time_point now = {};
    std::vector<DeviceView> devices = {};
    std::deque<Happening> happenings = {};  // the latest first
    std::size_t firstDevice = 0;            // the first that is shown, if there is no room for all
};

/// "connected".
std::string_view NameOf(LinkState link);

/// "input 1080i50 no signal, output 720p50, reference locked", of a connected device.
std::string SummaryOf(const DeviceView& device);

}  // namespace Morquil::Command
