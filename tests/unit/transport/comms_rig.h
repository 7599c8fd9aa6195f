// A transport on the loopback interface, whose other end the test holds.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "core/event.h"
#include "tests/kit/loopback_peer.h"
#include "tests/kit/process_counts.h"
#include "transport/make_comms.h"

namespace Morquil {

// A failure prints the event, not its bytes.
inline void PrintTo(CommsEvent event, std::ostream* out) {
    *out << "event " << static_cast<std::uint32_t>(event);
}

using Testing::LoopbackListener;
using Testing::LoopbackPeer;
using Testing::OpenHandleCount;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::uint32_t longMs = 5000;

// The system may count in ticks of 16 ms.
constexpr milliseconds tick{16};

class CommsTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(comms->Initialise()); }
    void TearDown() override { comms->Close(); }

    // An established connection, watched, whose first `Writable` has been reported.
    void Connect() {
        ASSERT_TRUE(comms->Open("127.0.0.1", listener.Port(), false));
        ASSERT_TRUE(comms->WaitForConnect(2000));
        peer = listener.Accept();
        ASSERT_NE(peer, nullptr);
        comms->SetWaitMode(true, longMs);
        ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Writable);
    }

    // An existing connection of a plain socket, whose far end is `peer`; nothing is watched yet.
    SocketHandle PlainConnection() {
        const std::unique_ptr<LoopbackPeer> plain = listener.Connect();
        peer = listener.Accept();
        return plain->Detach();
    }

    // The same; a byte from the peer has already arrived.
    SocketHandle PlainConnectionWithAByte() {
        const std::unique_ptr<LoopbackPeer> plain = listener.Connect();
        peer = listener.Accept();
        EXPECT_TRUE(peer->Send("x"));
        EXPECT_TRUE(plain->HasReceived());
        return plain->Detach();
    }

    // The event that is available without waiting; `Timeout` for none.
    CommsEvent EventAtOnce() {
        comms->SetWaitMode(true, 0);
        const CommsEvent event = comms->WaitForEvent();
        comms->SetWaitMode(true, longMs);
        return event;
    }

    // Sends until the system accepts no more. Returns: how many bytes it accepted.
    std::size_t SendUntilItWouldBlock() {
        const std::string block(65536, 'x');
        std::size_t sent = 0;
        int result = 0;
        while ((result = comms->Send(block.data(), static_cast<int>(block.size()), 0)) > 0) {
            sent += static_cast<std::size_t>(result);
        }
        EXPECT_EQ(result, commsWouldBlock);
        return sent;
    }

    // Sends a byte as soon as the system accepts one. Returns: the result of the last attempt.
    int SendWhenWritable() {
        int result = commsWouldBlock;
        while (result == commsWouldBlock) {
            comms->WaitUntilWritable();
            result = comms->Send("y", 1, 0);
        }
        return result;
    }

    std::string Receive(int length = 1024) {
        std::array<char, 1024> buffer{};
        const int size = comms->Receive(buffer.data(), length, 0);
        return size > 0 ? std::string(buffer.data(), static_cast<std::size_t>(size)) : std::string();
    }

    int ReceiveResult() {
        char byte = 0;
        return comms->Receive(&byte, 1, 0);
    }

    LoopbackListener listener;
    std::unique_ptr<LoopbackPeer> peer;
    std::unique_ptr<AbstractComms> comms = MakeComms();
};

// Neither accepts nor refuses further connections: attempts to connect stay pending.
class StalledListener {
public:
    StalledListener() {
        for (int count = 0; count < 3; ++count) {
            fillers_.push_back(listener_.BeginConnect());
        }
    }
    std::uint32_t Port() const { return listener_.Port(); }

private:
    LoopbackListener listener_{0};
    std::vector<std::unique_ptr<LoopbackPeer>> fillers_;
};

inline std::uint32_t RefusingPort() {
    LoopbackListener listener;
    return listener.Port();
}

}  // namespace Morquil
