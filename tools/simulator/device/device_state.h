#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "simulator/blocks/device_blocks.h"
#include "simulator/blocks/device_text.h"
#include "simulator/blocks/observations.h"
#include "simulator/device/device_identity.h"
#include "simulator/device/presets.h"
#include "simulator/device/still_store.h"

namespace Morquil::Simulator {

/// Who changes something.
enum class Hand {
    Host,    // cannot set what the device observes: such lines are passed over
    Device,  // somebody at the device, or the world around it
};

/// What came of a change.
struct ChangeOutcome {
    /// Why it was refused, for people; empty when it was carried out. A refused change leaves everything as it was.
    std::string complaint;
    /// What all hosts are told: a block of exactly the fields that were taken over, and behind it everything that
    /// follows from them. Nothing when nothing was taken over.
    std::string report;
};

/// Every block of a device with its present values, and the rules by which they hang together.
class DeviceState {
public:
    /// A device as it leaves the factory.
    explicit DeviceState(const DeviceIdentity& identity);

    /// The values of one block.
    template <class Description>
    const ChangeSetOf<Description>& Of() const {
        return present_.Of<Description>();
    }

    /// The values of all blocks.
    const DeviceBlocks& Blocks() const { return present_; }

    /// Takes over the fields of a block of settings and carries out its commands: all of it or nothing.
    template <class Description>
    ChangeOutcome Change(const ChangeSetOf<Description>& received, Hand hand) {
        ChangeSetOf<Description> taken = received;
        if (hand == Hand::Host) {
            ForgetObservations(taken);
        }
        if (IsEmpty(taken)) {
            return {};
        }
        DeviceBlocks changes;
        changes.Of<Description>() = taken;
        ChangeOutcome outcome = Change(changes);
        if (outcome.complaint.empty() && !HoldsNothing<Description>(taken)) {
            outcome.report.insert(0, DeviceText<Description>(taken));
        }
        return outcome;
    }

    /// Takes over the settings of several blocks at once: all or nothing. Commands among them are passed over.
    /// Returns the complaint, and a report of what is now different.
    ChangeOutcome Load(const DeviceBlocks& settings);

    /// Lets what is due happen. Time never runs backwards. Returns what all hosts are told.
    std::string Advance(std::chrono::milliseconds now);
    /// When something is due; nothing while nothing is under way.
    std::optional<std::chrono::milliseconds> NextDue() const { return stills_.NextDue(); }

    /// What the device tells a host that has just connected: who it is, and all its settings.
    std::string Greeting() const;

    /// Every block, settings and offers.
    std::string CompleteDump() const;

private:
    ChangeOutcome Change(const DeviceBlocks& changes);
    /// Makes `next` the present state once all hangs together, unless a value of `judged` is not offered then. Reports
    /// how it differs from `told`, and the fields that `mentioned` holds in any case.
    ChangeOutcome Adopt(DeviceBlocks next, const DeviceBlocks& judged, const DeviceBlocks& told,
                        const DeviceBlocks& mentioned);

    DeviceBlocks factory_;
    DeviceBlocks present_;
    Presets presets_;
    StillStore stills_;
};

}  // namespace Morquil::Simulator
