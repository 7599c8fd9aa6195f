#include <gtest/gtest.h>

#include "tests/kit/temporary_folder.h"
#include "tests/system/simulator_program/raw_host.h"
#include "tests/system/simulator_program/repeated_text.h"
#include "tests/system/simulator_program/started_program.h"

namespace Morquil::Testing {
namespace {

TEST(UnreadOutput, DoesNotHoldUpHostsAndIsDropped) {
    const TemporaryFolder folder;
    // Some megabytes: more than any pipe can hold.
    const std::string script =
        Repeated("help\n", 1500) + "wait-for-host\nset VIDEO PROC AMP Gain 12\nwait-for-no-host\nquit\n";
    StartedProgram program({"--port", "0", "--script", folder.Make("script.txt", script)});
    const std::string listening = program.NextLine();
    ASSERT_TRUE(listening.starts_with("listening on 127.0.0.1:")) << listening;
    {
        RawHost host("127.0.0.1", static_cast<std::uint16_t>(std::stoi(listening.substr(listening.find(':') + 1))));
        EXPECT_TRUE(host.ReceiveUntil("VIDEO PROC AMP:\nGain: 12\n\n").ends_with("Gain: 12\n\n"));
        std::string line;
        for (int count = 0; count < 100000 && !line.starts_with("morquil-sim: dropped "); ++count) {
            line = program.NextLine();
        }
        EXPECT_TRUE(line.ends_with(" unread messages")) << line;
    }
    EXPECT_EQ(program.AwaitEnd(), 0);
}

}  // namespace
}  // namespace Morquil::Testing
