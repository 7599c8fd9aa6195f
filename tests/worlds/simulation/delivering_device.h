#pragma once

#include <string>

#include "tests/worlds/simulation/dice.h"
#include "tests/worlds/simulation/simulated_comms.h"
#include "tests/worlds/simulation/wire.h"

namespace Morquil::Testing::Worlds {

/// Never the same twice, so that every report belongs to one change.
class Values {
public:
    int Next() { return ++last_; }

private:
    int last_ = 0;
};

/// A device that answers changes in order: it accepts, adjusts or refuses them, early or late, or vanishes.
class DeliveringDevice {
public:
    DeliveringDevice(Dice& dice, Values& values);

    NetworkManners manners;
    Wire wire;

    void Greet();
    /// Its reaction to a block.
    void Answer(const std::string& block);
    /// Someone else changes a value.
    void Change();
    void HangUp() { wire.End(dice_.OneIn(2) ? Ending::Reset : Ending::Close, Delay()); }

private:
    Time Delay();
    void AnswerRequest(const DeviceMessage& request, Time delay);
    void AnswerChange(const DeviceMessage& change, Time delay);
    DeviceMessage Report(const DeviceMessage& change, bool isAdjusting);

    Dice& dice_;
    Values& values_;
    const bool reports_;
    const bool isSlow_;
    bool hasVanished_ = false;
};

}  // namespace Morquil::Testing::Worlds
