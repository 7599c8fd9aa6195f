#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/simulation/dice.h"
#include "tests/simulation/simulated_comms.h"
#include "tests/simulation/wire.h"

namespace Morquil::Simulation {

/// A device, and a network, that may do anything.
class MadDevice {
public:
    explicit MadDevice(Dice& dice);

    NetworkManners manners;
    Wire wire;

    /// What it says of its own accord when a host connects; maybe nothing, maybe less than all.
    void Greet();
    /// What it makes of a block.
    void Answer(const std::string& block);
    /// Whether it may say bytes that are no protocol at all.
    bool IsWild() const { return isWild_; }
    /// It says something that nobody asked for, or hangs up.
    void SpeakUp();

private:
    Time Delay();
    void Say(Saying saying, Time delay = 0);
    Saying Change();
    std::string WildBytes();
    Saying Echo(const std::string& block);
    void HangUp();

    Dice& dice_;
    bool isSpoiling_;
    std::uint32_t acknowledges_;  ///< of four blocks
    std::uint32_t refuses_;       ///< of four acknowledgements
    std::uint32_t echoes_;        ///< of four blocks
    bool isSlow_;
    bool isWild_;
};

/// Where the host can set something, and what that is on the wire.
struct Setting {
    std::string header;
    std::string key;
};
/// Those that have setters and getters in `Host`, in its order.
extern const std::array<Setting, 6> settings;
/// A value of `settings[index]` on the wire.
std::string SettingValue(std::size_t index, std::uint32_t number);

}  // namespace Morquil::Simulation
