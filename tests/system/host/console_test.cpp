// The library's output never blocks a host, ends it or gets into its files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/host/host_process.h"

namespace Morquil::Testing {
namespace {

const char* const gain = "VIDEO PROC AMP:\nGain: 1\n\n";
const char* const lastGain = "VIDEO PROC AMP:\nGain: 60\n\n";

/// More than any pipe can hold.
std::string Flood() {
    std::string text;
    while (text.size() < 300'000) {
        text += gain;
    }
    return text;
}

/// The longest time that a disconnection took.
int LongestDisconnect(const std::string& report) {
    std::istringstream lines(ContentOf(report));
    int longest = -1;
    for (std::string line; std::getline(lines, line);) {
        if (line.find(" ms") != std::string::npos) {
            longest = std::max(longest, std::stoi(line));
        }
    }
    return longest;
}

class HostConsole : public testing::Test {
protected:
    HostConsole() { arguments_ = {first_.Address(), second_.Address(), report_}; }

    /// Returns: whether the host has disconnected from the first device, which floods it.
    bool EndFirstVisit() {
        EXPECT_TRUE(first_.AwaitHost());
        first_.Send(Flood());
        first_.Send(lastGain);
        return first_.AwaitHostGone();
    }
    /// Returns: whether the host has disconnected from the second device, after which it ends.
    bool EndSecondVisit() {
        EXPECT_TRUE(second_.AwaitHost());
        second_.Send(lastGain);
        return second_.AwaitHostGone();
    }

    const TemporaryFolder folder_;
    const std::string report_ = folder_.PathOf("report");
    const std::string file_ = folder_.PathOf("file");
    ScriptedDevice first_{CompleteDevice()};
    ScriptedDevice second_{CompleteDevice()};
    std::vector<std::string> arguments_;
};

TEST_F(HostConsole, ThatIsNotReadHoldsUpNothingAndLaterReportsWhatWasDropped) {
    HostProcess host(arguments_, Streams::OutputToPipe);
    ASSERT_TRUE(EndFirstVisit());
    std::string output = host.ReadOutput(32'768);
    host.EndInput();
    ASSERT_TRUE(EndSecondVisit());
    output += host.ReadOutput(std::string::npos);
    EXPECT_EQ(host.AwaitEnd(), 0);
    EXPECT_LE(LongestDisconnect(report_), 1000);
    const std::size_t notice = output.find(" bytes of output were dropped here]");
    const std::size_t later = output.find("Connecting to " + second_.Address());
    EXPECT_NE(later, std::string::npos);
    EXPECT_LT(notice, later);
}

TEST_F(HostConsole, WhoseReaderHasGoneDoesNotEndTheHost) {
    HostProcess host(arguments_, Streams::OutputToBrokenPipe);
    EXPECT_TRUE(EndFirstVisit());
    host.EndInput();
    EXPECT_TRUE(EndSecondVisit());
    EXPECT_EQ(host.AwaitEnd(), 0);
}

TEST_F(HostConsole, ThatIsClosedStaysSilentWhenItsNumberGoesToAFile) {
    arguments_.insert(arguments_.end(), {"open", file_});
    HostProcess host(arguments_, Streams::OutputClosed);
    EXPECT_TRUE(EndFirstVisit());
    host.EndInput();
    EXPECT_TRUE(EndSecondVisit());
    EXPECT_EQ(host.AwaitEnd(), 0);
    EXPECT_THAT(ContentOf(file_), testing::StartsWith("own words"));
    EXPECT_LE(ContentOf(file_).size(), 11U) << ContentOf(file_).substr(0, 200);
}

/// The whole of a short visit's output.
class ChosenConsole : public HostConsole {
protected:
    std::string Output() {
        HostProcess host(arguments_, Streams::OutputToPipe);
        EXPECT_TRUE(first_.AwaitHost());
        first_.Send(gain);
        first_.Send(lastGain);
        EXPECT_TRUE(first_.AwaitHostGone());
        host.EndInput();
        EXPECT_TRUE(EndSecondVisit());
        const std::string output = host.ReadOutput(std::string::npos);
        EXPECT_EQ(host.AwaitEnd(), 0);
        return output;
    }

    /// What the library has to say, in this order.
    void ExpectEverythingIn(const std::string& text) {
        std::size_t at = 0;
        for (const std::string& line :
             {"Connecting to " + first_.Address(), std::string("PROTOCOL PREAMBLE:"), std::string("Gain: 1"),
              std::string("Gain: 60"), "Connecting to " + second_.Address()}) {
            at = text.find(line + '\n', at);
            ASSERT_NE(at, std::string::npos) << line;
        }
    }
};

TEST_F(ChosenConsole, IsStandardOutputByDefault) {
    std::string output = Output();
    std::erase(output, '\r');
    ExpectEverythingIn(output);
}

TEST_F(ChosenConsole, GetsNotAByteInSilence) {
    arguments_.emplace_back("silent");
    EXPECT_EQ(Output(), "");
}

TEST_F(ChosenConsole, MayBeTheHostsOwnFunction) {
    arguments_.insert(arguments_.end(), {"lines", file_});
    EXPECT_EQ(Output(), "");
    ExpectEverythingIn(ContentOf(file_));
}

}  // namespace
}  // namespace Morquil::Testing
