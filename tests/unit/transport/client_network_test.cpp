// The client on the system's own transport.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/kit/loopback_peer.h"
#include "tests/kit/process_counts.h"
#include "tests/unit/transport/client_rig.h"
#include "transport/make_comms.h"

namespace Morquil::Testing {
namespace {

class ClientOnTheNetwork : public testing::Test {
protected:
    void Start() {
        ASSERT_TRUE(client.SetServer("127.0.0.1", listener.Port()));
        ASSERT_TRUE(client.Start());
        peer = listener.Accept();
        ASSERT_NE(peer, nullptr);
    }

    Watchdog watchdog;
    LoopbackListener listener;
    std::unique_ptr<LoopbackPeer> peer;
    TestClient client{MakeComms()};
};

TEST_F(ClientOnTheNetwork, StartsAgainAfterAnUnusedWakeUp) {
    // The thread sees the request itself when it returns from here.
    client.onReceived = [this] { std::thread([this] { client.RequestStop(); }).join(); };
    for (int round = 0; round < 3; ++round) {
        Start();
        ASSERT_TRUE(peer->Send("hello"));
        EXPECT_TRUE(client.AwaitThreadEnd());
        client.Stop();
    }
}

TEST_F(ClientOnTheNetwork, ReportsTheEndOfTheConnectionWhateverTheLastWordsWere) {
    for (const std::size_t length : {std::size_t{1000}, std::size_t{1024}, std::size_t{16} * 1024}) {
        testing::internal::CaptureStdout();
        bool closed = false;
        client.onReceived = [&] {
            if (!closed) {
                closed = true;
                peer->Close();
            }
        };
        Start();
        ASSERT_TRUE(peer->Send(std::string(length, 'x')));
        EXPECT_TRUE(client.AwaitThreadEnd());
        client.Stop();
        const std::string printed = testing::internal::GetCapturedStdout();
        EXPECT_TRUE(printed.ends_with("Network error on the socket\n")) << length;
    }
}

TEST_F(ClientOnTheNetwork, DeliversEverythingBeforeTheEndAndReportsTheLossOnce) {
    for (const std::size_t length : {std::size_t{1}, std::size_t{1024}, std::size_t{100'000}}) {
        testing::internal::CaptureStdout();
        const std::size_t received = client.Received().size();
        Start();
        ASSERT_TRUE(peer->Send(std::string(length, 'x')));
        peer->Close();
        EXPECT_TRUE(client.AwaitThreadEnd());
        client.Stop();
        EXPECT_EQ(client.Received().size() - received, length);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string(length, 'x') + "Network error on the socket\n");
    }
}

TEST_F(ClientOnTheNetwork, UsesHardlyAnyProcessorTimeWhileADeviceDoesNotRead) {
    // Far more than the buffers of both sides can hold.
    constexpr std::size_t pieceLength = 250;
    constexpr std::size_t pieceCount = 80'000;
    constexpr std::chrono::milliseconds time{800};
    Start();
    client.Queue(std::vector<std::string>(pieceCount, std::string(pieceLength, 'x')));
    ASSERT_TRUE(peer->HasReceived());

    const std::chrono::nanoseconds before = ProcessorTime();
    std::this_thread::sleep_for(time);
    EXPECT_LT(ProcessorTime() - before, time / 20);
    client.Stop();
}

}  // namespace
}  // namespace Morquil::Testing
