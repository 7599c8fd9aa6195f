// A host that was started without standard streams: what it prints goes nowhere, least of all to a device or a file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/host/host_process.h"

namespace Morquil::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(StandardDescriptors, AreNeverTheLibrarysOwn) {
    const TemporaryFolder folder;
    const std::string report = folder.PathOf("report");
    const std::string settings = folder.PathOf("settings");
    ScriptedDevice first(CompleteDevice());
    ScriptedDevice second(CompleteDevice());
    HostProcess host({first.Address(), second.Address(), report, "save", settings}, Streams::AllClosed);
    for (ScriptedDevice* const device : {&first, &second}) {
        ASSERT_TRUE(device->AwaitHost());
        device->Send("VIDEO PROC AMP:\nGain: 60\n\n");
        ASSERT_TRUE(device->AwaitHostGone());
    }
    EXPECT_EQ(host.AwaitEnd(), 0);

    EXPECT_THAT(ContentOf(report), HasSubstr("0: closed\n1: closed\n2: closed\n"));
    EXPECT_THAT(ContentOf(settings), testing::StartsWith("VIDEO INPUT:\n"));
    EXPECT_THAT(ContentOf(settings), Not(testing::ContainsRegex("words|Connect|connect")));
    for (std::string block = first.NextBlock(0); !block.empty(); block = first.NextBlock(0)) {
        EXPECT_THAT(block, Not(testing::ContainsRegex("words|Connect|connect")));
    }
}

}  // namespace
}  // namespace Morquil::Testing
