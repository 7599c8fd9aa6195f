// What a device reports day in, day out takes no memory.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "device/device.h"
#include "tests/allocation/exempt_comms.h"
#include "tests/device/device_texts.h"
#include "tests/platform/owned_bstr.h"
#include "tests/support/fake_comms.h"
#include "tests/support/watchdog.h"

namespace Morquil {
namespace {

using namespace Testing;
using Test::Exempt;
using Test::ExemptComms;
using Test::OwnedBstr;
using Test::ScarceMemory;
using Test::Utf16;

TEST(Receiving, TakesNoMemoryForReportsOfNumbersAndWords) {
    const Exempt test;
    const Watchdog watchdog;
    FakeConnection link;
    link.AnswerWith(DeviceAnswer);
    link.Push(GreetingText());
    auto* const device = new CMorquilDevice(std::make_unique<ExemptComms>(link.MakeComms()));
    _MorquilConnectToFailure reason{};
    ASSERT_EQ(device->Connect(OwnedBstr(Utf16{OLESTR("device.test")}).Get(), nullptr, &reason), S_OK);
    ASSERT_TRUE(link.AwaitIdle());
    std::string reports;
    for (int gain = 0; gain < 100; ++gain) {
        reports += "VIDEO PROC AMP:\nGain: " + std::to_string(gain) + "\n\nVIDEO OUTPUT:\nHDMI output: YCbCr422\n\n";
    }
    {
        const ScarceMemory memory(0, false);
        link.Push(reports);
        EXPECT_TRUE(link.AwaitIdle());
        EXPECT_FALSE(ScarceMemory::HasRunOut());
    }
    EXPECT_TRUE(link.IsOpen());
    device->Disconnect();
    device->Release();
}

}  // namespace
}  // namespace Morquil
