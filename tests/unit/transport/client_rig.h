// A client on a transport without a network or a clock, and a test around it.
#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/thread.h"
#include "tests/kit/fake_comms.h"
#include "tests/kit/monitor.h"
#include "tests/kit/threads.h"
#include "tests/kit/watchdog.h"
#include "transport/text_protocol_client.h"

namespace Morquil::Testing {

using QRN::Core::CurrentThreadId;

/// A message that is a list of pieces.
class PiecesMessage final : public TextProtocolMessageBase {
public:
    explicit PiecesMessage(std::vector<std::string> pieces) : pieces_(std::move(pieces)) {}
    bool WriteTo(IMessageSender& sender) const override {
        sender.BeginMessage();
        for (const std::string& piece : pieces_) {
            sender.SendFormatted("%s", piece.c_str());
        }
        return sender.EndMessage();
    }

private:
    std::vector<std::string> pieces_;
};

/// Sends what the test queues and counts every received piece that contains "ACK" as an acknowledgement.
class TestClient final : public TextProtocolClient {
public:
    explicit TestClient(FakeConnection& connection) : TextProtocolClient(connection.MakeComms()) {}
    explicit TestClient(std::unique_ptr<AbstractComms> comms) : TextProtocolClient(std::move(comms)) {}
    ~TestClient() override { Stop(); }

    bool Queue(std::vector<std::string> pieces) {
        {
            const auto lock = Monitor::Enter();
            waiting_.push_back(std::move(pieces));
        }
        return WakeSender();
    }
    void CountOnNotices() { ++disconnectNoticeCount_; }
    using TextProtocolClient::RequestStop;
    bool AwaitReceived(const std::string& text) const {
        return Monitor::Await([&] { return received_.find(text) != std::string::npos; });
    }
    bool AwaitNotices(std::size_t count) const {
        return Monitor::Await([&] { return notices_.size() >= count; });
    }
    bool AwaitThreadEnd() const {
        return Monitor::Await([&] { return threadsEnded_ == threadsStarted_; });
    }
    std::string Received() const { return Locked(received_); }
    std::vector<bool> Notices() const { return Locked(notices_); }
    int ThreadsStarted() const { return Locked(threadsStarted_); }

    /// Run on the connection thread for whatever is received. To be set before the client is started.
    std::function<void()> onReceived;
    std::function<void(bool)> onNotice;

private:
    template <class Value>
    static Value Locked(const Value& value) {
        const auto lock = Monitor::Enter();
        return value;
    }

    std::unique_ptr<TextProtocolMessageBase> TakeNextMessage() override {
        const auto lock = Monitor::Enter();
        if (waiting_.empty()) {
            return nullptr;
        }
        auto message = std::make_unique<PiecesMessage>(std::move(waiting_.front()));
        waiting_.pop_front();
        return message;
    }
    void OnDataReceived(const char* bytes, std::size_t length) override {
        const std::string text(bytes, length);
        if (text.find("ACK") != std::string::npos) {
            Acknowledge();
        }
        if (onReceived) {
            onReceived();
        }
        const auto lock = Monitor::Enter();
        received_ += text;
        Monitor::Changed();
    }
    void OnConnectionChanged(bool connected) override {
        if (onNotice) {
            onNotice(connected);
        }
        const auto lock = Monitor::Enter();
        notices_.push_back(connected);
        Monitor::Changed();
    }
    void OnThreadStarting() override {
        const auto lock = Monitor::Enter();
        ++threadsStarted_;
    }
    void OnThreadEnding() override {
        const auto lock = Monitor::Enter();
        ++threadsEnded_;
        Monitor::Changed();
    }

    std::deque<std::vector<std::string>> waiting_;
    std::string received_;
    std::vector<bool> notices_;
    int threadsStarted_ = 0;
    int threadsEnded_ = 0;
};

class TextProtocolClientTest : public testing::Test {
protected:
    bool StartClient() { return client.SetServer("device.test", 9800) && client.Start(); }

    Watchdog watchdog;
    FakeConnection link;
    TestClient client{link};
};

}  // namespace Morquil::Testing
