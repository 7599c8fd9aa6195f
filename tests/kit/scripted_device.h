#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "tests/kit/network_device.h"

namespace Morquil::Testing {

/// What a device sends by itself.
struct DeviceScript {
    /// Sent to a host that connects.
    std::string greeting = {};
    /// Whether each block is answered with "ACK".
    bool acknowledges = true;
    /// What follows the "ACK" of a block that is the header line alone, by that header.
    std::map<std::string, std::string> answers = {};
    /// Answers each block instead of all this, if set; on the device's thread.
    std::function<std::string(const std::string& block)> respond = {};
};

/// A device that a test drives block by block. A block is its lines including the final empty line; so is a "PING".
class ScriptedDevice {
public:
    explicit ScriptedDevice(DeviceScript script = {});

    const std::string& Address() const { return network_.Address(); }
    bool AwaitHost() { return network_.AwaitHost(); }
    bool AwaitHostGone() { return network_.AwaitHostGone(); }
    void Send(std::string_view text) { network_.Send(text); }
    void Acknowledge() { Send("ACK\n\n"); }
    void SetAcknowledging(bool acknowledges);
    /// Runs `action` on the device's thread.
    void Do(const std::function<void()>& action) { network_.Do(action); }
    void HangUp() { network_.HangUp(); }
    void Reset() { network_.Reset(); }

    /// The next block of the host; empty when none comes within `seconds`.
    std::string NextBlock(int seconds = 10);
    /// The next block that is not just a request for what is available.
    std::string NextChange();
    /// Whether more has arrived than the calls above have returned.
    bool HasReceivedMore();
    /// The same, except requests.
    bool HasReceivedChange();

private:
    std::string Answer(std::string_view bytes);
    std::string AnswerBlock(const std::string& block);

    DeviceScript script_;
    std::string unfinished_;  // for the device thread only

    std::mutex lock_;
    std::condition_variable arrived_;
    std::deque<std::string> blocks_;

    NetworkDevice network_;
};

}  // namespace Morquil::Testing
