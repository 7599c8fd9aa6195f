#pragma once

#include <functional>
#include <string>

#include "morquil.hpp"
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/scripted_device.h"

namespace Morquil::Testing {

/// What a device answers to a change; runs on its thread.
using Answer = std::function<std::string(const std::string& block)>;

inline std::string Accept(const std::string& block) {
    return "ACK\n\n" + block;
}
inline std::string Refuse(const std::string&) {
    return "NACK\n\n";
}
inline std::string SayNothing(const std::string&) {
    return {};
}

/// A device that answers every request, and every change as the test wants it to.
inline DeviceScript Answering(Answer answer) {
    DeviceScript script = CompleteDevice();
    script.respond = [answers = script.answers, answer = std::move(answer)](const std::string& block) {
        const std::string header = block.substr(0, block.find(':'));
        const bool isChange = block != header + ":\n\n" && block != "PING\n\n";
        const auto found = answers.find(header);
        return isChange ? answer(block) : "ACK\n\n" + (found == answers.end() ? std::string() : found->second);
    };
    return script;
}

/// Such a device, and a C++ host that is connected to it.
struct ConnectedTo {
    explicit ConnectedTo(Answer answer) : device(Answering(std::move(answer))) {}
    ~ConnectedTo() { host.Disconnect(); }

    ScriptedDevice device;
    morquil::Device host{morquil::Connect(device.Address())};
};

}  // namespace Morquil::Testing
