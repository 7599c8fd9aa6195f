#pragma once

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/kit/network_device.h"

namespace Morquil::Testing {

/// Something that says the same to each of its visitors, at a device's port. It waits 5 s for each.
class TalkingPort {
public:
    enum class Then { StaysOpen, HangsUp };

    TalkingPort(std::string text, Then then, int visitors)
        : thread_([this, text = std::move(text), then, visitors] { Serve(text, then, visitors); }) {}
    ~TalkingPort() { thread_.join(); }
    TalkingPort(const TalkingPort&) = delete;
    TalkingPort& operator=(const TalkingPort&) = delete;

    const std::string& Address() const { return address_.Text(); }

private:
    void Serve(const std::string& text, Then then, int visitors) {
        for (int visitor = 0; visitor < visitors; ++visitor) {
            auto peer = address_.Listener().Accept();
            if (peer != nullptr) {
                peer->Send(text);
            }
            if (then == Then::StaysOpen) {
                open_.push_back(std::move(peer));
            }
        }
    }

    DeviceAddress address_;
    std::vector<std::unique_ptr<LoopbackPeer>> open_;  // for the thread, and after it
    std::thread thread_;
};

}  // namespace Morquil::Testing
