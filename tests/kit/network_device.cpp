#include "tests/kit/network_device.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <utility>

namespace Morquil::Testing {
namespace {

constexpr std::uint32_t devicePort = 9800;
constexpr int idleMs = 60'000;

// Some address of 127.0.0.0/8, but none that other tests use by name.
std::uint32_t AnyLoopbackAddress() {
    static std::mt19937 numbers{std::random_device()()};
    const auto byte = [&] { return 2 + static_cast<std::uint32_t>(numbers() % 250); };
    return 127U << 24 | byte() << 16 | byte() << 8 | byte();
}

std::string Dotted(std::uint32_t address) {
    std::string text;
    for (const int shift : {24, 16, 8, 0}) {
        text += (text.empty() ? "" : ".") + std::to_string(address >> shift & 0xff);
    }
    return text;
}

}  // namespace

DeviceAddress::DeviceAddress() {
    for (int attempts = 0; attempts < 20; ++attempts) {
        const std::uint32_t address = AnyLoopbackAddress();
        listener_ = std::make_unique<LoopbackListener>(address, devicePort);
        text_ = Dotted(address);
        if (listener_->Port() == devicePort) {
            return;
        }
    }
    ADD_FAILURE() << "no address to listen at";
}

NetworkDevice::NetworkDevice(Behaviour behaviour) : behaviour_(std::move(behaviour)) {
    LoopbackListener meeting;
    waker_ = meeting.Connect();
    woken_ = meeting.Accept();
    thread_ = std::thread([this] { Run(); });
}

NetworkDevice::~NetworkDevice() {
    Do([this] { stopping_ = true; });
    thread_.join();
}

bool NetworkDevice::Await(const std::function<bool()>& condition) {
    std::unique_lock lock(lock_);
    return changed_.wait_for(lock, std::chrono::seconds(10), condition);
}

bool NetworkDevice::AwaitHost() {
    return Await([this] { return hostCame_; });
}

bool NetworkDevice::AwaitHostGone() {
    return Await([this] { return hostGone_; });
}

void NetworkDevice::Do(std::function<void()> action) {
    const auto done = std::make_shared<bool>(false);
    {
        const std::lock_guard lock(lock_);
        actions_.push_back([this, done, action = std::move(action)] {
            action();
            const std::lock_guard locked(lock_);
            *done = true;
            changed_.notify_all();
        });
    }
    waker_->Send("!");
    EXPECT_TRUE(Await([done] { return *done; })) << "the device does not respond";
}

void NetworkDevice::Send(std::string_view text) {
    Do([this, sent = std::string(text)] {
        if (host_ != nullptr) {
            host_->Send(sent);
        }
    });
}

void NetworkDevice::HangUp() {
    Do([this] { DropHost(); });
}

void NetworkDevice::Reset() {
    Do([this] {
        if (host_ != nullptr) {
            host_->Reset();
        }
        DropHost();
    });
}

void NetworkDevice::Run() {
    while (!stopping_) {
        const SocketHandle socket = host_ != nullptr ? host_->Handle() : address_.Listener().Handle();
        const Readiness ready = AwaitEither(woken_->Handle(), socket, idleMs);
        if (ready.first) {
            RunAction();
        } else if (ready.second) {
            HandleSocket();
        }
    }
}

void NetworkDevice::RunAction() {
    woken_->Receive(1);
    ReceiveAll();
    std::function<void()> action;
    {
        const std::lock_guard lock(lock_);
        action = std::move(actions_.front());
        actions_.pop_front();
    }
    action();
}

void NetworkDevice::ReceiveAll() {
    while (host_ != nullptr && AwaitEither(host_->Handle(), woken_->Handle(), 0).first) {
        Receive();
    }
}

void NetworkDevice::HandleSocket() {
    if (host_ == nullptr) {
        Accept();
    } else {
        Receive();
    }
}

void NetworkDevice::Accept() {
    host_ = address_.Listener().Accept();
    if (host_ == nullptr) {
        return;
    }
    host_->SendAtOnce();
    host_->Send(behaviour_.greet());
    const std::lock_guard lock(lock_);
    hostCame_ = true;
    hostGone_ = false;
    changed_.notify_all();
}

void NetworkDevice::Receive() {
    const std::optional<std::string> received = host_->ReceiveSome();
    if (received) {
        host_->Send(behaviour_.answer(*received));
    } else {
        DropHost();
    }
}

void NetworkDevice::DropHost() {
    host_.reset();
    const std::lock_guard lock(lock_);
    hostGone_ = true;
    changed_.notify_all();
}

}  // namespace Morquil::Testing
