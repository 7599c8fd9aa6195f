// What the gateway knows of a device's values, and who changed them last.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "gateway/text/times.h"
#include "properties/property.h"

namespace Morquil::Gateway {

using Properties::Property;
using Properties::Value;

/// The place of a property in the table.
using Position = std::uint16_t;
Position PositionOf(const Property& property);
const Property& PropertyAt(Position position);

enum class Origin {
    Initial,    // the first report after a connection
    Elsewhere,  // the front panel, another host, or the device itself: the protocol does not say which
    Gateway     // a user of this gateway
};
std::string_view NameOf(Origin origin);

/// Who asked for a change, as the history and the audit name them.
using Who = std::string;

struct LastChange {
    WallTime time;
    Origin origin = Origin::Initial;
    Who who = {};
};

struct ValueChange {
    const Property* property = nullptr;
    std::optional<Value> oldValue = {};
    std::optional<Value> newValue = {};
    LastChange last = {};
};

/// Not shared between threads.
class Mirror {
public:
    Mirror();

    const std::optional<Value>& At(Position position) const { return values_[position]; }
    /// Null for a value that has not changed since the gateway started.
    const LastChange* LastChangeAt(Position position) const;

    /// Returns the change; nothing if the value is the same.
    std::optional<ValueChange> Store(Position position, std::optional<Value> value, LastChange last);

private:
    std::vector<std::optional<Value>> values_;
    std::map<Position, LastChange> changes_;
};

}  // namespace Morquil::Gateway
