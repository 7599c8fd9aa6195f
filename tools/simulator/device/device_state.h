#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "simulator/blocks/device_blocks.h"
#include "simulator/device/device_identity.h"
#include "simulator/device/presets.h"
#include "simulator/device/still_store.h"

namespace Morquil::Simulator {

/// Who makes a change.
enum class ChangeSource {
    Host,    // cannot set what the device observes: such lines are ignored
    Device,  // a person at the device, or its environment
};

/// The result of a change.
struct ChangeOutcome {
    /// Why it was refused, for people; empty if it was carried out. A refused change has no effect.
    std::string error;
    /// The text to send to all hosts: a block with exactly the accepted fields, followed by everything that results
    /// from them. Empty if nothing was accepted.
    std::string report;
};

/// The current values of all blocks of a device, and the rules that connect them.
class DeviceState {
public:
    /// Creates a device with its factory settings.
    explicit DeviceState(const DeviceIdentity& identity);

    /// The values of one block.
    template <class Description>
    const ChangeSetOf<Description>& Of() const {
        return present_.Of<Description>();
    }

    /// The values of all blocks.
    const DeviceBlocks& Blocks() const { return present_; }

    /// Applies the fields of a block of settings and carries out its commands: all or nothing.
    ChangeOutcome Change(AnyBlock received, ChangeSource source);
    template <class Description>
    ChangeOutcome Change(const ChangeSetOf<Description>& received, ChangeSource source) {
        return Change(AnyBlock{placeOf<Description>, &received}, source);
    }

    /// Applies the settings of several blocks at once: all or nothing. Commands among them are ignored. Returns the
    /// error, and a report of what is different now.
    ChangeOutcome Load(const DeviceBlocks& settings);

    /// Completes what is due. Time never runs backwards. Returns the text to send to all hosts.
    std::string Advance(std::chrono::milliseconds now);
    /// When the next action is due; nothing if no action is in progress.
    std::optional<std::chrono::milliseconds> NextDue() const { return stills_.NextDue(); }

    /// What the device sends to a newly connected host: its identity and all its settings.
    std::string Greeting() const;

    /// All blocks, settings and offers.
    std::string CompleteDump() const;

private:
    ChangeOutcome Change(const DeviceBlocks& changes);
    /// Makes `next` the current state after adjusting dependent settings, unless a value in `checked` is not offered
    /// then. Reports the differences from `alreadyReported`, and in any case the fields that `mentioned` holds.
    ChangeOutcome Adopt(DeviceBlocks next, const DeviceBlocks& checked, const DeviceBlocks& alreadyReported,
                        const DeviceBlocks& mentioned);

    DeviceBlocks present_;
    Presets presets_;
    StillStore stills_;
};

}  // namespace Morquil::Simulator
