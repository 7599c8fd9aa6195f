#include "gateway/fleet/link.h"

namespace Morquil::Gateway {

std::string_view NameOf(LinkState state) {
    switch (state) {
        case LinkState::Disabled:
            return "disabled";
        case LinkState::Connecting:
            return "connecting";
        case LinkState::Connected:
            return "connected";
        case LinkState::Lost:
            return "lost";
        case LinkState::Unresolved:
            return "unresolved";
        case LinkState::Unreachable:
            return "unreachable";
        case LinkState::Refused:
            return "refused";
        case LinkState::NoDevice:
            return "no-device";
        case LinkState::WrongProtocol:
            return "wrong-protocol";
        case LinkState::RemoteLocked:
            break;
    }
    return "remote-locked";
}

}  // namespace Morquil::Gateway
