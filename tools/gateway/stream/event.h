// What a stream carries.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "gateway/fleet/json/fleet_json.h"

namespace Morquil::Gateway {

/// An event in the form of server-sent events: its name, its data, and last its id, so that it can be left out.
class EventText {
public:
    /// Without an id if it is empty.
    EventText(std::string_view name, const Json& body, std::string_view id);

    std::string_view WithId() const { return text_; }
    /// For events between snapshots: resuming there would miss the snapshots that are still to come. A blank line has
    /// to follow.
    std::string_view WithoutId() const { return std::string_view(text_).substr(0, dataBegin_ + dataSize_ + 1); }
    /// The JSON alone.
    std::string_view Data() const { return std::string_view(text_).substr(dataBegin_, dataSize_); }

private:
    std::string text_;
    std::size_t dataBegin_ = 0;
    std::size_t dataSize_ = 0;
};

using SharedText = std::shared_ptr<const EventText>;

/// An event as it was published.
struct Event {
    std::uint64_t number = 0;
    std::string name = {};    // "change", "link"
    std::string device = {};  // empty: it concerns all
    Json body = {};           // without what follows
    std::vector<ValueChange> changes = {};
    std::vector<const Property*> offers = {};
};

}  // namespace Morquil::Gateway
