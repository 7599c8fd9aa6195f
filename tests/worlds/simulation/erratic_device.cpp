#include "tests/worlds/simulation/erratic_device.h"

#include <algorithm>
#include <array>
#include <vector>

#include "tests/worlds/simulation/device_messages.h"
#include "tests/worlds/simulation/spoken_keys.h"

namespace Morquil::Testing::Worlds {

namespace {

/// As many as one receive returns.
constexpr std::uint32_t longestRow = 200;

}  // namespace

ErraticDevice::ErraticDevice(Dice& dice, bool isThere)
    : dice_(dice),
      isSpoiling_(dice.OneIn(3)),
      acknowledges_(dice.OneIn(4) ? 3 : 4),
      refuses_(dice.OneIn(4) ? 2 : 0),
      echoes_(dice.Below(5)),
      isSlow_(dice.OneIn(4)),
      isWild_(dice.OneIn(8)) {
    using Opening = NetworkManners::Opening;
    if (!isThere || dice.OneIn(16)) {
        manners.opening = dice.OneIn(2) ? Opening::IsRefused : Opening::Hangs;
    }
    manners.openingTime = dice.Below(50);
    manners.sendLimit = dice.OneIn(8) ? 1 + dice.Below(40) : manners.sendLimit;
    manners.readsUntil = dice.OneIn(20) ? dice.Below(30'000) : never;
    manners.closesAtReceive = dice.OneIn(2);
    manners.sendsFailFrom = dice.OneIn(20) ? dice.Below(30'000) : never;
}

Time ErraticDevice::Delay() {
    return isSlow_ && dice_.OneIn(8) ? dice_.Below(11'000) : dice_.Below(4);
}

void ErraticDevice::Say(DeviceMessage message, Time delay) {
    if (isSpoiling_ && message.kind == DeviceMessage::Kind::Block) {
        Spoil(dice_, message);
    }
    if (isSpoiling_ && dice_.OneIn(6)) {
        wire.Say(dice_, Nonsense(dice_), delay);
    }
    wire.Say(dice_, message, delay);
}

void ErraticDevice::Greet() {
    enum Greeting { wrongVersion, remoteLocked, lackingBlocks, silent, cutOff, hangsUp, complete };
    const std::uint32_t greeting = dice_.Below(20);
    if (greeting == silent) {
        return;
    }
    for (const DeviceMessage& message : GreetingMessages()) {
        DeviceMessage said = message;
        if (greeting == wrongVersion && said.header == "PROTOCOL PREAMBLE") {
            said = BlockMessage(said.header, {{"Version", dice_.OneIn(2) ? "2.21" : "1.21"}});
        }
        if (greeting == remoteLocked && said.header == "MORQUIL DEVICE") {
            said.lines.back().second = "true";
            said = BlockMessage(said.header, said.lines);
        }
        if (greeting != lackingBlocks || !dice_.OneIn(8)) {
            Say(said, dice_.OneIn(8) ? Delay() : 0);
        }
    }
    if (greeting == cutOff) {
        wire.EndAfter(dice_.Below(2000), AnyEnding());
    } else if (greeting == hangsUp) {
        wire.End(AnyEnding(), Delay());
    }
}

DeviceMessage ErraticDevice::Echo(const std::string& block) {
    DeviceMessage echo = BlockMessage(block);
    if (!echo.lines.empty() && dice_.OneIn(8)) {
        return Change();
    }
    return echo;
}

void ErraticDevice::Answer(const std::string& block) {
    const bool acknowledges = dice_.Below(4) < acknowledges_;
    const DeviceMessage acknowledgement = Acknowledgement(dice_.Below(4) >= refuses_);
    const bool isFirst = !dice_.OneIn(8);
    const Time delay = Delay();
    if (acknowledges && isFirst) {
        Say(acknowledgement, delay);
    }
    if (block != "PING\n\n") {
        const DeviceMessage asked = BlockMessage(block);
        for (const DeviceMessage& answer : AvailabilityMessages()) {
            if (answer.header == asked.header) {
                Say(answer, delay);
            }
        }
        if (!asked.lines.empty() && dice_.Below(4) < echoes_) {
            Say(Echo(block), delay);
        }
    }
    if (acknowledges && !isFirst) {
        Say(acknowledgement, delay);
    }
}

/// Of one key, and maybe of some that follow it in its block.
DeviceMessage ErraticDevice::ChangeOfKeys() {
    const std::vector<SpokenKey>& keys = SpokenKeys();
    std::size_t place = dice_.Below(static_cast<std::uint32_t>(keys.size()));
    const std::string& header = keys[place].header;
    Lines lines;
    do {
        const SpokenKey& key = keys[place];
        const Lines more = key.LinesOf(dice_.Below(static_cast<std::uint32_t>(key.values.size())));
        lines.insert(lines.end(), more.begin(), more.end());
        // What follows a selecting line would belong to it.
        place = key.selector.empty() ? place + 1 : keys.size();
    } while (place < keys.size() && keys[place].header == header && dice_.OneIn(2));
    return BlockMessage(header, lines);
}

DeviceMessage ErraticDevice::Change() {
    if (!dice_.OneIn(3)) {
        return ChangeOfKeys();
    }
    static const std::array<DeviceMessage, 14> others{
        BlockMessage("VIDEO INPUT:\nVideo mode: 720p50\n\n"),
        BlockMessage("VIDEO INPUT:\nVideo source: SDI1\nVideo mode: 1080i50\nWide SD aspect: true\n\n"),
        BlockMessage("VIDEO INPUT:\nVideo source: HDMI\nHDMI 3D Full: true\n\n"),
        BlockMessage("VIDEO OUTPUT:\nVideo mode: 720p50\n\n"),
        BlockMessage("VIDEO OUTPUT:\nVideo mode: 1080i50\nAspect ratio: Anamorphic\nTransition setting: 10\n\n"),
        BlockMessage("VIDEO ADVANCED:\nScenecut detect: false\n\n"),
        BlockMessage("VIDEO ADVANCED:\nScenecut detect: true\n\n"),
        BlockMessage("GENLOCK:\nSignal locked: false\n\n"),
        BlockMessage("VIDEO ADJUST:\nRed: 3\nLuma low: 7\n\n"),
        BlockMessage("VIDEO ADJUST:\nRed: 0\nAspect fill luma: 65\n\n"),
        BlockMessage("ANCILLARY DATA:\nTimecode output line: 10\nCC output line: 10\nAFD output line: 12\n\n"),
        BlockMessage("VIDEO PROC AMP AVAILABILITY:\nGain range: -1 1\n\n"),
        BlockMessage("MORQUIL DEVICE:\nModel name: Other\nRemote lock: true\n\n"),
        BlockMessage("PROTOCOL PREAMBLE:\nVersion: 1.23\n\n"),
    };
    return others[dice_.Below(static_cast<std::uint32_t>(dice_.OneIn(4) ? others.size() : others.size() - 2))];
}

/// Unexpected acknowledgements, or refusals. Rows of them arrive together, and hosts act between the rows.
void ErraticDevice::Storm(bool isPositive, std::uint32_t count) {
    while (count > 0) {
        const std::uint32_t row = 1 + dice_.Below(std::min(count, longestRow));
        wire.SayWhole(Acknowledgement(isPositive, row), Delay());
        count -= row;
    }
}

void ErraticDevice::Leave() {
    wire.End(AnyEnding(), 0);
}

void ErraticDevice::HangUp() {
    if (dice_.OneIn(2)) {
        wire.End(AnyEnding(), Delay());
    } else {
        wire.EndAfter(dice_.Below(100), AnyEnding());
    }
}

/// Random bytes, or a block with some bytes changed.
std::string ErraticDevice::WildBytes() {
    if (dice_.OneIn(2)) {
        std::string bytes(dice_.Below(80), '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(dice_.Below(256));
        }
        return bytes;
    }
    std::string bytes = dice_.OneIn(2) ? Change().bytes : dice_.OneOf(AvailabilityMessages()).bytes;
    for (std::uint32_t changes = dice_.Below(4); changes > 0; --changes) {
        dice_.OneOf(bytes) = static_cast<char>(dice_.Below(256));
    }
    return bytes;
}

void ErraticDevice::ActUnprompted() {
    if (isWild_ && dice_.OneIn(2)) {
        return wire.Say(WildBytes());
    }
    switch (dice_.Below(8)) {
        case 0:
            Storm(true, dice_.OneIn(4) ? dice_.Below(600) : 1);
            break;
        case 1:
            Say(Nonsense(dice_), Delay());
            break;
        case 2:
            Storm(false, dice_.Below(dice_.OneIn(4) ? 600 : 8));
            break;
        case 3:
            for (std::uint32_t left = dice_.Below(dice_.OneIn(8) ? 300 : 60); left > 0; --left) {
                Say(Change());
            }
            break;
        case 4:
            dice_.OneIn(4) ? HangUp() : Say(Change(), Delay());
            break;
        default:
            Say(Change(), Delay());
    }
}

}  // namespace Morquil::Testing::Worlds
