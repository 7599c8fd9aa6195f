#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <memory>
#include <thread>
#include <vector>

#include "tests/kit/loopback_peer.h"
#include "transport/file_descriptor.h"
#include "transport/poll_comms.h"

namespace Morquil {
namespace {

using Testing::LoopbackListener;
using Testing::LoopbackPeer;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

class PollCommsTest : public testing::Test {
protected:
    void Connect() {
        ASSERT_TRUE(comms.Initialise());
        ASSERT_TRUE(comms.Open("127.0.0.1", listener.Port(), false));
        peer = listener.Accept();
        ASSERT_NE(peer, nullptr);
        comms.SetWaitMode(true, 5000);
        ASSERT_EQ(comms.WaitForEvent(), CommsEvent::Writable);
    }
    void TearDown() override { comms.Close(); }

    LoopbackListener listener;
    std::unique_ptr<LoopbackPeer> peer;
    PollComms comms;
};

// Interrupts a thread's system calls again and again, without restarting them.
class Interrupter {
public:
    explicit Interrupter(pthread_t target) {
        struct sigaction action {};
        action.sa_handler = [](int) {};
        sigaction(SIGUSR1, &action, &before_);
        thread_ = std::thread([this, target] {
            while (!end_) {
                pthread_kill(target, SIGUSR1);
                std::this_thread::yield();
            }
        });
    }
    ~Interrupter() {
        end_ = true;
        thread_.join();
        sigaction(SIGUSR1, &before_, nullptr);
    }

private:
    std::atomic<bool> end_{false};
    struct sigaction before_ {};
    std::thread thread_;
};

// Uses up all descriptors below `limit`, so that the next one is higher.
std::vector<FileDescriptor> TakeDescriptorsBelow(int limit) {
    std::vector<FileDescriptor> taken;
    for (int last = 0; last >= 0 && last < limit - 1;) {
        last = open("/dev/null", O_RDONLY | O_CLOEXEC);
        taken.emplace_back(last);
    }
    return taken;
}

TEST_F(PollCommsTest, ReportsTheLastBytesOfAnAttachedConnectionBeforeItsEnd) {
    ASSERT_TRUE(comms.Initialise());
    const SocketHandle socket = listener.Connect()->Detach();
    peer = listener.Accept();
    ASSERT_TRUE(peer->Send("last words"));
    peer->Close();
    pollfd end{static_cast<int>(socket), POLLRDHUP, 0};
    ASSERT_EQ(poll(&end, 1, 5000), 1);
    comms.Attach(socket, false);
    comms.SetWaitMode(true, 5000);
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Writable);
    std::array<char, 16> some{};
    EXPECT_EQ(comms.Receive(some.data(), 4, 0), 4);
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(comms.Receive(some.data(), 16, 0), 6);
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::SocketError);
    comms.SetWaitMode(true, 0);
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Timeout);
}

// The system keeps what arrived before a reset.
TEST_F(PollCommsTest, ReportsBytesBeforeAReset) {
    Connect();
    ASSERT_TRUE(peer->Send("last words"));
    peer->Reset();
    ASSERT_EQ(comms.WaitForEvent(), CommsEvent::Readable);
    std::array<char, 16> some{};
    EXPECT_EQ(comms.Receive(some.data(), 16, 0), 10);
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::SocketError);
}

TEST_F(PollCommsTest, ReportsEverythingAgainWhenItIsRearmed) {
    Connect();
    ASSERT_TRUE(peer->Send("x"));
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Readable);
    EXPECT_TRUE(comms.WaitForConnect(0));
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Readable);
    // The pending `Writable` is discarded.
    EXPECT_TRUE(comms.WaitForConnect(0));
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Writable);
}

TEST_F(PollCommsTest, LooksAtBytesAndLeavesThem) {
    Connect();
    ASSERT_TRUE(peer->Send("abc"));
    ASSERT_EQ(comms.WaitForEvent(), CommsEvent::Readable);
    std::array<char, 4> seen{};
    EXPECT_EQ(comms.Receive(seen.data(), 4, MSG_PEEK), 3);
    EXPECT_EQ(comms.Receive(seen.data(), 1, 0), 1);
    EXPECT_EQ(comms.Receive(seen.data(), 4, MSG_PEEK), 2);
    EXPECT_EQ(comms.Receive(seen.data(), 4, 0), 2);
    EXPECT_EQ(seen[0], 'b');
}

TEST_F(PollCommsTest, EndsAnInterruptedWaitInTime) {
    Connect();
    const Interrupter interrupter(pthread_self());
    comms.SetWaitMode(true, 200);
    const auto begin = Clock::now();
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Timeout);
    const auto taken = Clock::now() - begin;
    EXPECT_GE(taken, milliseconds(200));
    EXPECT_LT(taken, milliseconds(1500));
}

TEST_F(PollCommsTest, ConnectsAndTransfersInSpiteOfInterruptions) {
    const Interrupter interrupter(pthread_self());
    for (int round = 0; round < 50; ++round) {
        Connect();
        EXPECT_TRUE(peer->Send("x"));
        EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Readable);
        char byte = 0;
        EXPECT_EQ(comms.Receive(&byte, 1, 0), 1);
        EXPECT_EQ(comms.Send("y", 1, 0), 1);
        comms.Close();
    }
}

TEST_F(PollCommsTest, WorksWithDescriptorsOfAnyNumber) {
    constexpr int beyondEverySelect = 1100;
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit raised{before.rlim_max, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &raised), 0);
    {
        const std::vector<FileDescriptor> taken = TakeDescriptorsBelow(beyondEverySelect);
        ASSERT_GE(taken.back().Get(), beyondEverySelect - 1);
        Connect();
        EXPECT_TRUE(comms.Signal(signalUser));
        EXPECT_EQ(comms.WaitForEvent(), CommsEvent::UserSignal);
        EXPECT_TRUE(peer->Send("x"));
        EXPECT_EQ(comms.WaitForEvent(), CommsEvent::Readable);
        comms.Close();
    }
    setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(PollCommsTest, PassesNoDescriptorToOtherPrograms) {
    const int first = FileDescriptor(dup(0)).Get();
    Connect();
    const int beyond = FileDescriptor(dup(0)).Get();
    std::vector<int> inherited;
    for (int descriptor = first; descriptor < beyond; ++descriptor) {
        const int flags = fcntl(descriptor, F_GETFD);
        if (flags >= 0 && (flags & FD_CLOEXEC) == 0) {
            inherited.push_back(descriptor);
        }
    }
    // The peer is a plain socket of the test.
    const int plain = static_cast<int>(peer->Detach());
    EXPECT_EQ(inherited, std::vector<int>{plain});
    close(plain);
}

TEST_F(PollCommsTest, SendsSmallBlocksOfAnOpenedConnectionAtOnce) {
    ASSERT_TRUE(comms.Initialise());
    const int opened = FileDescriptor(dup(0)).Get();
    ASSERT_TRUE(comms.Open("127.0.0.1", listener.Port(), false));
    LoopbackPeer connection(opened);
    EXPECT_TRUE(connection.SendsAtOnce());
    connection.Detach();
}

TEST_F(PollCommsTest, UsesOneDescriptorBesideTheConnection) {
    const int first = FileDescriptor(dup(0)).Get();
    ASSERT_TRUE(comms.Initialise());
    EXPECT_EQ(FileDescriptor(dup(0)).Get(), first + 1);
}

TEST_F(PollCommsTest, IsNotInitialisedWithoutDescriptors) {
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const int next = FileDescriptor(dup(0)).Get();
    const rlimit lowered{static_cast<rlim_t>(next), before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &lowered), 0);
    const bool initialised = comms.Initialise();
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(initialised);
}

TEST_F(PollCommsTest, DoesNotOpenWithoutDescriptors) {
    ASSERT_TRUE(comms.Initialise());
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit lowered{static_cast<rlim_t>(FileDescriptor(dup(0)).Get()), before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &lowered), 0);
    const bool opened = comms.Open("127.0.0.1", listener.Port(), false);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(opened);
}

TEST_F(PollCommsTest, ReportsThatTheSystemRefusesToWait) {
    Connect();
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    // No call may look at more descriptors than a process may have.
    const rlimit lowered{1, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &lowered), 0);
    const CommsEvent event = comms.WaitForEvent();
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(event, CommsEvent::WaitFailed);
}

TEST_F(PollCommsTest, ReportsASocketClosedElsewhereAsBroken) {
    ASSERT_TRUE(comms.Initialise());
    const int closed = FileDescriptor(dup(0)).Get();
    comms.Attach(closed, true);
    comms.SetWaitMode(true, 5000);
    EXPECT_EQ(comms.WaitForEvent(), CommsEvent::SocketError);
    comms.Attach(invalidSocket, true);
}

}  // namespace
}  // namespace Morquil
