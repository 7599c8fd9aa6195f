// Nothing that a device sends makes its host's memory grow.
#include "tests/worlds/allocation/hostile_bytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "device/device.h"
#include "tests/kit/fake_comms.h"
#include "tests/kit/owned_bstr.h"
#include "tests/kit/watchdog.h"
#include "tests/unit/device/device_texts.h"
#include "tests/worlds/allocation/exempt_comms.h"
#include "tests/worlds/allocation/scarce_memory.h"

namespace Morquil::Testing {
namespace {

constexpr int rounds = 50;
constexpr std::size_t roundSize = 20'000;

/// What the library prints of the device's bytes is not worth reading.
class Silence {
public:
    Silence() { testing::internal::CaptureStdout(); }
    ~Silence() { testing::internal::GetCapturedStdout(); }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
};

/// A host that is connected to a device that acknowledges everything.
class Attacked : public testing::Test {
protected:
    void SetUp() override {
        link.AnswerWith([](const std::string&) { return std::string("ACK\n\n"); });
        link.Push(CompleteText());
        _MorquilConnectToFailure reason{};
        ASSERT_EQ(device->Connect(OwnedBstr(Utf16{OLESTR("device.test")}).Get(), nullptr, &reason), S_OK);
        ASSERT_TRUE(link.AwaitIdle());
    }
    void TearDown() override {
        device->Disconnect();
        device->Release();
        EXPECT_TRUE(link.AwaitDestroyed());
    }

    /// Returns the bytes that the library holds after it has received all of this.
    std::size_t BytesAfter(const std::vector<std::string>& pieces) {
        for (const std::string& piece : pieces) {
            link.Push(piece);
        }
        EXPECT_TRUE(link.AwaitIdle());
        return LiveBytes();
    }

    const Exempt test;
    const Watchdog watchdog;
    FakeConnection link;
    CMorquilDevice* const device = new CMorquilDevice(std::make_unique<ExemptComms>(link.MakeComms()));
};

TEST_F(Attacked, ByHostileBytesHoldsNoMoreMemoryThanAfterTheFirstRound) {
    HostileBytes bytes(20'231);
    std::size_t afterFirstRound = 0;
    std::vector<std::size_t> afterEach;
    {
        const Silence silence;
        afterFirstRound = BytesAfter(bytes.Round(roundSize));
        for (int round = 0; round < rounds; ++round) {
            afterEach.push_back(BytesAfter(bytes.Round(roundSize)));
        }
    }
    for (int round = 0; round < rounds; ++round) {
        EXPECT_LE(afterEach[static_cast<std::size_t>(round)], afterFirstRound) << "after round " << round;
    }
}

TEST_F(Attacked, ByHostileBytesStillUnderstandsWhatFollows) {
    {
        const Silence silence;
        BytesAfter(HostileBytes(7).Round(roundSize));
    }
    BytesAfter({"MORQUIL DEVICE:\nSoftware Version: 0xabc\n\n"});
    UINT version = 0;
    EXPECT_TRUE(link.IsOpen());
    EXPECT_EQ(device->GetSoftwareVersion(&version), S_OK);
    EXPECT_EQ(version, 0xabcU);
}

}  // namespace
}  // namespace Morquil::Testing
