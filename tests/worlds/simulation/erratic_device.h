#pragma once

#include <cstdint>
#include <string>

#include "tests/worlds/simulation/dice.h"
#include "tests/worlds/simulation/simulated_comms.h"
#include "tests/worlds/simulation/wire.h"

namespace Morquil::Testing::Worlds {

/// A device, and a network, that may do anything with one connection.
class ErraticDevice {
public:
    /// One that is absent accepts no connections.
    ErraticDevice(Dice& dice, bool isThere);

    NetworkManners manners;
    Wire wire;

    /// What it sends by itself when a host connects; maybe nothing, maybe less than everything.
    void Greet();
    /// Its reaction to a block.
    void Answer(const std::string& block);
    /// Whether it may send bytes that are not protocol text at all.
    bool IsWild() const { return isWild_; }
    /// It sends something unrequested, or hangs up.
    void ActUnprompted();
    /// It disappears, in the middle of whatever it was doing.
    void Leave();

private:
    Time Delay();
    void Say(DeviceMessage message, Time delay = 0);
    DeviceMessage Change();
    DeviceMessage ChangeOfKeys();
    void Storm(bool isPositive, std::uint32_t count);
    std::string WildBytes();
    DeviceMessage Echo(const std::string& block);
    void HangUp();
    Ending AnyEnding() { return dice_.OneIn(2) ? Ending::Reset : Ending::Close; }

    Dice& dice_;
    bool isSpoiling_;
    std::uint32_t acknowledges_;  ///< of four blocks
    std::uint32_t refuses_;       ///< of four acknowledgements
    std::uint32_t echoes_;        ///< of four blocks
    bool isSlow_;
    bool isWild_;
};

}  // namespace Morquil::Testing::Worlds
