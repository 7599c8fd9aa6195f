#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "tests/kit/loopback_peer.h"

namespace Morquil::Testing {

/// An address of this machine at which no other device listens, and a listener there.
class DeviceAddress {
public:
    DeviceAddress();

    /// Dotted, as a host writes it.
    const std::string& Text() const { return text_; }
    LoopbackListener& Listener() { return *listener_; }

private:
    std::string text_;
    std::unique_ptr<LoopbackListener> listener_;
};

/// A device on the network, for one host at a time. Its owner decides what it sends. Everything runs on the device's
/// own thread; the test's waits end after 10 s.
class NetworkDevice {
public:
    struct Behaviour {
        /// Sent to a host that has connected.
        std::function<std::string()> greet;
        /// Sent in answer to bytes from the host.
        std::function<std::string(std::string_view)> answer;
    };

    explicit NetworkDevice(Behaviour behaviour);
    ~NetworkDevice();
    NetworkDevice(const NetworkDevice&) = delete;
    NetworkDevice& operator=(const NetworkDevice&) = delete;

    const std::string& Address() const { return address_.Text(); }
    /// Waits until a host has connected and has been greeted.
    bool AwaitHost();
    /// Waits until a host that had connected has closed the connection, or the device has.
    bool AwaitHostGone();

    /// Runs `action` on the device's thread, after everything that has arrived has been answered. Returns afterwards.
    void Do(std::function<void()> action);
    void Send(std::string_view text);
    /// Closes in an orderly way.
    void HangUp();
    /// Resets the connection.
    void Reset();

private:
    void Run();
    void RunAction();
    void HandleSocket();
    void Accept();
    void Receive();
    void ReceiveAll();
    void DropHost();
    bool Await(const std::function<bool()>& condition);

    DeviceAddress address_;
    Behaviour behaviour_;
    std::unique_ptr<LoopbackPeer> waker_;  // a byte sent here wakes the thread for one action
    std::unique_ptr<LoopbackPeer> woken_;
    std::unique_ptr<LoopbackPeer> host_;  // for the thread only
    bool stopping_ = false;               // for the thread only

    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> actions_;
    bool hostCame_ = false;
    bool hostGone_ = false;

    std::thread thread_;
};

}  // namespace Morquil::Testing
