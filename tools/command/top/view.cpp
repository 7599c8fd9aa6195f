#include "command/top/view.h"

namespace Morquil::Command {

std::string_view NameOf(LinkState link) {
    // clang-format off
    switch (link) {
        case LinkState::Connecting:  return "connecting";
        case LinkState::Connected:   return "connected";
        case LinkState::Lost:        return "lost";
        case LinkState::Unreachable: return "unreachable";
    }
    // clang-format on
    return {};
}

std::string SummaryOf(const DeviceView& device) {
    return "input " + device.input + ", output " + device.output + ", reference " + device.reference;
}

}  // namespace Morquil::Command
