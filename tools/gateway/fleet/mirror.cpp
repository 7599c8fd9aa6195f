#include "gateway/fleet/mirror.h"

#include <utility>

namespace Morquil::Gateway {

Position PositionOf(const Property& property) {
    return static_cast<Position>(&property - Properties::AllProperties().data());
}

const Property& PropertyAt(Position position) {
    return Properties::AllProperties()[position];
}

std::string_view NameOf(Origin origin) {
    return origin == Origin::Initial ? "initial" : origin == Origin::Elsewhere ? "elsewhere" : "gateway";
}

Mirror::Mirror() : values_(Properties::AllProperties().size()) {}

const LastChange* Mirror::LastChangeAt(Position position) const {
    const auto found = changes_.find(position);
    return found == changes_.end() ? nullptr : &found->second;
}

std::optional<ValueChange> Mirror::Store(Position position, std::optional<Value> value, LastChange last) {
    std::optional<Value>& stored = values_[position];
    if (stored == value) {
        return std::nullopt;
    }
    ValueChange change{&PropertyAt(position), std::exchange(stored, value), std::move(value), std::move(last)};
    if (change.last.origin != Origin::Initial) {
        changes_[position] = change.last;
    }
    return change;
}

}  // namespace Morquil::Gateway
