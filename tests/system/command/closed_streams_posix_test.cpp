#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/program_without_streams.h"

namespace Morquil::Testing {
namespace {

TEST(Command, WithoutStandardStreamsPrintsNothingToTheDevice) {
    ScriptedDevice device(CompleteDevice());
    const ProgramWithoutStreams program("\"" MORQUIL_COMMAND_PATH "\" -d " + device.Address() + " watch");
    ASSERT_TRUE(device.AwaitHost());
    EXPECT_EQ(program.StandardDescriptors(), "/dev/null /dev/null /dev/null ");
    device.HangUp();
    for (std::string block = device.NextBlock(0); !block.empty(); block = device.NextBlock(0)) {
        EXPECT_THAT(block, testing::Not(testing::HasSubstr("onnect")));
    }
}

}  // namespace
}  // namespace Morquil::Testing
