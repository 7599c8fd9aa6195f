#include "simulator/faults/faulty_line.h"

#include <gtest/gtest.h>

#include "tests/unit/simulator/listening_host.h"

namespace Morquil::Simulator {
namespace {

using namespace std::chrono_literals;

const std::string preamble = "PROTOCOL PREAMBLE:\nVersion: 2.22\n\n";
const std::string genlock = "GENLOCK:\nLine offset: 4\n\n";
const std::string test = "TEST PATTERN:\nEnabled: true\n\n";
const std::string acknowledged = "ACK\n\n";

struct Received {
    std::vector<std::string> pieces;
    std::string text;
    bool end = false;
};

class FaultyLineTest : public testing::Test {
protected:
    /// Everything that the host receives until nothing more is due.
    Received Receive(std::chrono::milliseconds now = 0ms) {
        Received received;
        for (Delivery next = line.Take(now); !next.IsNothing(); next = line.Take(now)) {
            received.text += next.bytes;
            received.end = received.end || next.hangUp;
            received.pieces.push_back(std::move(next.bytes));
        }
        return received;
    }

    Faults faults;
    FaultyLine line{faults};
};

TEST_F(FaultyLineTest, ChangesNothingWithoutFaults) {
    line.FromDevice(preamble + acknowledged + genlock, 0ms);
    const Received received = Receive();
    EXPECT_EQ(received.text, preamble + acknowledged + genlock);
    EXPECT_FALSE(received.end);
    EXPECT_EQ(line.FromHost("PING\n\n" + genlock), "PING\n\n" + genlock);
    EXPECT_EQ(line.NextDue(), std::nullopt);
}

TEST_F(FaultyLineTest, DelaysEverythingByTheLatency) {
    faults.latency = 40ms;
    line.FromDevice(preamble, 100ms);
    EXPECT_EQ(line.NextDue(), 140ms);
    EXPECT_EQ(Receive(139ms).text, "");
    EXPECT_EQ(Receive(140ms).text, preamble);
}

TEST_F(FaultyLineTest, SendsSingleBytes) {
    faults.fragmentation = Fragmentation::Byte;
    line.FromDevice(preamble, 0ms);
    const Received received = Receive();
    EXPECT_EQ(received.text, preamble);
    EXPECT_EQ(received.pieces.size(), preamble.size());
}

TEST_F(FaultyLineTest, SendsPiecesThatDependOnTheSeedAlone) {
    const auto pieces = [](std::uint32_t seed, int idleQuestions) {
        Faults random{.fragmentation = Fragmentation::Random, .seed = seed};
        FaultyLine randomLine(random);
        while (idleQuestions-- > 0) {
            randomLine.Take(0ms);
        }
        randomLine.FromDevice(preamble + genlock + test, 0ms);
        std::vector<std::string> result;
        for (Delivery next = randomLine.Take(0ms); !next.IsNothing(); next = randomLine.Take(0ms)) {
            result.push_back(std::move(next.bytes));
        }
        return result;
    };
    EXPECT_EQ(pieces(7, 0), pieces(7, 3));
    EXPECT_NE(pieces(7, 0), pieces(8, 0));
    EXPECT_GT(pieces(7, 0).size(), 1U);
}

TEST_F(FaultyLineTest, EndsLinesWithCarriageReturnAndLineFeed) {
    faults.crlf = true;
    line.FromDevice(preamble, 0ms);
    EXPECT_EQ(Receive().text, "PROTOCOL PREAMBLE:\r\nVersion: 2.22\r\n\r\n");
}

TEST_F(FaultyLineTest, SwallowsAcknowledgementsAndRefusalsWhenItNeverAcknowledges) {
    faults.neverAcknowledge = true;
    line.FromDevice(preamble + acknowledged + genlock + "NACK\n\n" + test, 0ms);
    EXPECT_EQ(Receive().text, preamble + genlock + test);
}

TEST_F(FaultyLineTest, RefusesEverythingOnRequest) {
    faults.refuseAll = true;
    EXPECT_NE(line.FromHost(genlock), genlock);
    line.FromDevice(preamble, 0ms);
    line.FromDevice(acknowledged + genlock, 0ms);
    EXPECT_EQ(Receive().text, preamble + "NACK\n\n" + genlock);
}

TEST_F(FaultyLineTest, HangsUpAfterExactlyTheGivenNumberOfBytes) {
    const std::string all = preamble + genlock + test;
    for (std::size_t count = 0; count <= all.size(); ++count) {
        Faults dropping{.dropAfter = count};
        FaultyLine dropped(dropping);
        dropped.FromDevice(preamble, 0ms);
        dropped.FromDevice(genlock + test, 0ms);
        dropped.FromDevice(genlock, 0ms);
        std::string text;
        Delivery next = dropped.Take(0ms);
        for (; !next.IsNothing() && !next.hangUp; next = dropped.Take(0ms)) {
            text += next.bytes;
        }
        EXPECT_EQ(text, all.substr(0, count));
        EXPECT_TRUE(next.hangUp) << count;
    }
}

TEST_F(FaultyLineTest, HangsUpInTheMiddleOfTheFirstBlockAfterThePreamble) {
    faults.closeMidBlock = true;
    line.FromDevice(preamble + genlock + test, 0ms);
    const Received received = Receive();
    EXPECT_EQ(received.text, preamble + genlock.substr(0, genlock.size() / 2));
    EXPECT_TRUE(received.end);
}

TEST_F(FaultyLineTest, HangsUpInTheMiddleOfALaterBlockOnCommand) {
    line.FromDevice(preamble + genlock, 0ms);
    line.HangUpMidBlock();
    line.FromDevice(acknowledged + test, 0ms);
    const Received received = Receive();
    EXPECT_EQ(received.text, preamble + genlock + acknowledged + test.substr(0, test.size() / 2));
    EXPECT_TRUE(received.end);
}

TEST_F(FaultyLineTest, PutsNonsenseBetweenBlocksThatCanStillBeRead) {
    faults.garbage = true;
    line.FromDevice(preamble + genlock + acknowledged + test, 0ms);
    const std::string text = Receive().text;
    EXPECT_TRUE(text.starts_with(preamble));
    ListeningHost host;
    host.Receive(text);
    EXPECT_EQ(host.blocks, (std::vector<std::string>{"PROTOCOL PREAMBLE", "GENLOCK", "TEST PATTERN"}));
    EXPECT_EQ(host.acknowledgements, 1);
    EXPECT_GE(host.errors.size(), 3U);
}

TEST_F(FaultyLineTest, PutsAnOverLongLineIntoEveryBlock) {
    faults.longLines = true;
    line.FromDevice(preamble + acknowledged + genlock, 0ms);
    const std::string text = Receive().text;
    EXPECT_TRUE(text.starts_with(preamble + acknowledged + "GENLOCK:\nEndless: xxx"));
    EXPECT_TRUE(text.ends_with("xxx\nLine offset: 4\n\n"));
    EXPECT_GT(text.size(), 4096U);
}

TEST_F(FaultyLineTest, RepeatsTheLatestReportForAsLongAsTheHostReads) {
    faults.flood = true;
    line.FromDevice(preamble + acknowledged + genlock, 0ms);
    EXPECT_EQ(line.Take(0ms).bytes, preamble + acknowledged + genlock);
    for (std::chrono::milliseconds now = 1ms; now < 4ms; ++now) {
        const std::string burst = Receive(now).text;
        EXPECT_GT(burst.size(), 10000U);
        EXPECT_TRUE(burst.starts_with(genlock + genlock));
        EXPECT_TRUE(burst.ends_with(genlock));
        EXPECT_EQ(line.NextDue(), now + 1ms);
    }
    line.FromDevice(test, 4ms);
    EXPECT_EQ(line.Take(4ms).bytes, test);
    EXPECT_TRUE(Receive(5ms).text.starts_with(test + test)) << "the repeated value is current";
}

TEST_F(FaultyLineTest, SendsOnlyThePreambleWhileSilentAndThenResumes) {
    faults.silent = true;
    line.FromDevice(preamble + genlock, 0ms);
    EXPECT_EQ(Receive().text, preamble);
    faults.silent = false;
    line.FromDevice(test, 0ms);
    EXPECT_EQ(Receive().text, test);
}

TEST_F(FaultyLineTest, HangsUpOnCommandAndDropsWhatIsInTransit) {
    line.FromDevice(preamble, 0ms);
    faults.latency = 10ms;
    line.FromDevice(genlock, 0ms);
    line.HangUp(5ms);
    const Received received = Receive(20ms);
    EXPECT_EQ(received.text, preamble);
    EXPECT_TRUE(received.end);
}

TEST_F(FaultyLineTest, ReportsThatAHostLeavesTooMuchUnread) {
    line.FromDevice(std::string(FaultyLine::unreadLimit, 'x'), 0ms);
    EXPECT_FALSE(line.IsUnread());
    line.FromDevice("x", 0ms);
    EXPECT_TRUE(line.IsUnread());
}

}  // namespace
}  // namespace Morquil::Simulator
