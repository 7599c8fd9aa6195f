// Winsock tells the end of a connection when the bytes before it have been received. Those that were read ahead of the
// client count as not received yet.
#include "tests/transport/comms_rig.h"

namespace Morquil {
namespace {

TEST_F(CommsTest, TellsTheEndAfterTheBytesThatCameBeforeIt) {
    Connect();
    ASSERT_TRUE(peer->Send("abcdef"));
    peer->Close();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "abcd");
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "ef");
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, LosesNothingOfALongTextBeforeTheEnd) {
    Connect();
    const std::string sent(100'000, 'x');
    ASSERT_TRUE(peer->Send(sent));
    peer->Close();
    std::string received;
    CommsEvent event = comms->WaitForEvent();
    for (; event == CommsEvent::Readable; event = comms->WaitForEvent()) {
        received += Receive(1000);
    }
    EXPECT_EQ(event, CommsEvent::SocketError);
    EXPECT_EQ(received, sent);
}

TEST_F(CommsTest, WaitsQuietlyForBytesBeforeTheEndToBeReceived) {
    Connect();
    ASSERT_TRUE(peer->Send("x"));
    peer->Close();
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    EXPECT_TRUE(comms->Signal(signalUser));
    EXPECT_EQ(EventAtOnce(), CommsEvent::UserSignal);
    EXPECT_EQ(Receive(), "x");
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
}

}  // namespace
}  // namespace Morquil
