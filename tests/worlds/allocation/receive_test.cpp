// What a device routinely reports allocates no memory.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "device/device.h"
#include "tests/kit/fake_comms.h"
#include "tests/kit/owned_bstr.h"
#include "tests/kit/watchdog.h"
#include "tests/unit/device/device_texts.h"
#include "tests/worlds/allocation/exempt_comms.h"
#include "tests/worlds/allocation/full_dump.h"

namespace Morquil {
namespace {

using namespace Testing;
using Testing::Exempt;
using Testing::ExemptComms;
using Testing::OwnedBstr;
using Testing::ScarceMemory;
using Testing::Utf16;

/// A connected device; its host and its far end use exempt memory.
class Receiving : public testing::Test {
protected:
    void SetUp() override {
        link.AnswerWith(DeviceAnswer);
        link.Push(GreetingText());
        _MorquilConnectToFailure reason{};
        ASSERT_EQ(device->Connect(OwnedBstr(Utf16{OLESTR("device.test")}).Get(), nullptr, &reason), S_OK);
        ASSERT_TRUE(link.AwaitIdle());
    }
    void TearDown() override {
        EXPECT_TRUE(link.IsOpen());
        device->Disconnect();
        device->Release();
    }

    void Push(const std::string& text) {
        link.Push(text);
        EXPECT_TRUE(link.AwaitIdle());
    }
    void ExpectAllocatesNothingFor(const std::string& text) {
        const ScarceMemory memory(0, false);
        Push(text);
        EXPECT_FALSE(ScarceMemory::HasRunOut());
    }

    const Exempt test;
    const Watchdog watchdog;
    FakeConnection link;
    CMorquilDevice* const device = new CMorquilDevice(std::make_unique<ExemptComms>(link.MakeComms()));
};

TEST_F(Receiving, AllocatesNothingForReportsOfNumbersAndWords) {
    std::string reports;
    for (int gain = 0; gain < 100; ++gain) {
        reports += "VIDEO PROC AMP:\nGain: " + std::to_string(gain) + "\n\nVIDEO OUTPUT:\nHDMI output: YCbCr422\n\n";
    }
    ExpectAllocatesNothingFor(reports);
}

// Including the mirrors, the observers' lists and the pending calls. Each request to the device allocates a message,
// but a state that is reported a second time causes no requests.
TEST_F(Receiving, AllocatesNothingForAFullDump) {
    const std::string dump = DumpText();
    Push(dump);
    ExpectAllocatesNothingFor(dump);
}

}  // namespace
}  // namespace Morquil
