#include "tests/worlds/simulation/delivering_device.h"

#include <array>

#include "tests/worlds/simulation/device_messages.h"

namespace Morquil::Testing::Worlds {

DeliveringDevice::DeliveringDevice(Dice& dice, Values& values)
    : dice_(dice), values_(values), reports_(!dice.OneIn(4)), isSlow_(dice.OneIn(4)) {
    manners.sendLimit = dice.OneIn(8) ? 1 + dice.Below(40) : manners.sendLimit;
    manners.closesAtReceive = dice.OneIn(2);
}

Time DeliveringDevice::Delay() {
    return isSlow_ && dice_.OneIn(4) ? dice_.Below(8'000) : dice_.Below(4);
}

void DeliveringDevice::Greet() {
    for (const DeviceMessage& message : GreetingMessages()) {
        wire.Say(dice_, message, 0);
    }
}

void DeliveringDevice::Answer(const std::string& block) {
    hasVanished_ |= dice_.OneIn(100);
    if (hasVanished_) {
        return;
    }
    const Time delay = Delay();
    if (block == "PING\n\n") {
        wire.Say(dice_, Acknowledgement(true), delay);
        return;
    }
    const DeviceMessage message = BlockMessage(block);
    message.lines.empty() ? AnswerRequest(message, delay) : AnswerChange(message, delay);
}

void DeliveringDevice::AnswerRequest(const DeviceMessage& request, Time delay) {
    wire.Say(dice_, Acknowledgement(true), delay);
    for (const DeviceMessage& answer : AvailabilityMessages()) {
        if (answer.header == request.header) {
            wire.Say(dice_, answer, 0);
        }
    }
}

void DeliveringDevice::AnswerChange(const DeviceMessage& change, Time delay) {
    const bool isRefusing = dice_.OneIn(4);
    const bool isEarly = dice_.OneIn(4);
    const DeviceMessage report = Report(change, isRefusing || dice_.OneIn(4));
    const bool isReporting = reports_ && !(isRefusing && dice_.OneIn(2));
    if (isReporting && isEarly) {
        wire.Say(dice_, report, delay);
    }
    wire.Say(dice_, Acknowledgement(!isRefusing), delay);
    if (isReporting && !isEarly) {
        wire.Say(dice_, report, dice_.OneIn(4) ? Delay() : 0);
    }
}

DeviceMessage DeliveringDevice::Report(const DeviceMessage& change, bool isAdjusting) {
    Lines lines = change.lines;
    for (auto& [key, value] : lines) {
        value = isAdjusting ? std::to_string(values_.Next()) : value;
    }
    return BlockMessage(change.header, lines);
}

void DeliveringDevice::Change() {
    static const std::array<DeviceMessage, 4> changes{
        BlockMessage("VIDEO PROC AMP:\nGain: 0\n\n"), BlockMessage("VIDEO PROC AMP:\nGain: 0\nHue: 0\n\n"),
        BlockMessage("VIDEO ADJUST:\nRed: 0\n\n"), BlockMessage("GENLOCK:\nLine offset: 0\n\n")};
    if (!hasVanished_) {
        wire.Say(dice_, Report(dice_.OneOf(changes), true), Delay());
    }
}

}  // namespace Morquil::Testing::Worlds
