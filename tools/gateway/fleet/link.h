// How a device is connected.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "gateway/text/times.h"

namespace Morquil::Gateway {

enum class LinkState {
    Disabled,       // not to be connected
    Connecting,     // for the first time
    Connected,      // the complete state is known
    Lost,           // was connected; attempts to reconnect go on
    Unresolved,     // the name has no address
    Unreachable,    // no route to the address, or nothing answers there
    Refused,        // the host refuses connections
    NoDevice,       // something accepts connections there, but sends nothing
    WrongProtocol,  // what it sends is not a converter's, or another version of the protocol
    RemoteLocked    // locked against remote control
};

/// "connected", "wrong-protocol".
std::string_view NameOf(LinkState state);

struct Link {
    LinkState state = LinkState::Connecting;
    std::string sentence = {};  // for people: what is wrong, and what to do about it
    WallTime since = WallClock::now();
};

}  // namespace Morquil::Gateway
