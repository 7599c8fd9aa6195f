// Carries what a device reports from the library's thread to the gateway's.
#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <vector>

#include "gateway/fleet/mirror.h"
#include "morquil.hpp"

namespace Morquil::Gateway {

/// A value that differs from the one before it.
struct Reading {
    Position position = 0;
    std::optional<Value> value = {};
    WallTime time = {};
    bool isEcho = false;   // the device repeats what this connection has sent
    bool isFirst = false;  // part of the state at the beginning
};

struct BoxContent {
    std::vector<Reading> readings;
    std::vector<morquil::PropertySet> offers;  // sets whose offers were reported
};

/// Reads values as soon as they are reported, so that no change is missed however busy the gateway is. It is bounded:
/// beyond `mostReadings` a newer value replaces an older one of the same property.
/// Threads: any.
class ReportBox {
public:
    static constexpr std::size_t mostReadings = 4'096;

    ReportBox();

    /// Reads the state as a whole.
    /// Returns: whether the box was empty, so that the other thread has to be woken. The same holds for `Add`.
    bool AddAll(const morquil::Device& device);
    bool Add(const morquil::Device& device, const morquil::Report& report);

    BoxContent Take();

private:
    void Look(const morquil::Device& device, Position position, bool isEcho, bool isFirst);
    void Keep(Reading reading);
    bool IsEmpty() const { return content_.readings.empty() && content_.offers.empty(); }

    std::mutex mutex_;
    std::vector<std::optional<Value>> known_;
    BoxContent content_;
};

}  // namespace Morquil::Gateway
