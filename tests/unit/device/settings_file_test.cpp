// Settings files and the end of a connection: a saved file holds everything that was known before it or nothing, and a
// load does not outlast it.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <string>
#include <thread>

#include "device/device.h"
#include "tests/kit/stalled_pipe.h"
#include "tests/kit/temporary_folder.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

OwnedBstr BstrOf(const std::string& path) {
    const std::u16string units = Testing::ToPath(path).u16string();
    return OwnedBstr(Utf16(units.begin(), units.end()));
}

class DeviceThatIsSaved {
public:
    DeviceThatIsSaved() { rig.ConnectToGoodDevice(); }

    std::string Save() {
        EXPECT_EQ(rig.device->SaveSettingsFile(path.Get()), S_FALSE);
        return Testing::ContentOf(folder.PathOf("settings.txt"));
    }

    DeviceRig rig;

private:
    const Testing::TemporaryFolder folder;
    const OwnedBstr path = BstrOf(folder.PathOf("settings.txt"));
};

const std::string savedByADisconnectedDevice =
    "VIDEO INPUT:\n\n\nVIDEO OUTPUT:\n\n\nVIDEO PROC AMP:\n\n\nVIDEO ADJUST:\n\n\nNOISE REDUCTION:\n\n\n"
    "TEST PATTERN:\n\n\nGENLOCK:\n\n\nANCILLARY DATA:\n\n\nVIDEO ADVANCED:\n\n\nMODE3D:\n\n\n"
    "VARIABLE ASPECT RATIO:\n\n\nALIGN:\n\n\nAUDIO:\n\n\nMORQUIL DEVICE:\n\n\n";

TEST(DeviceSettingsFile, HoldsAllThatWasKnownBeforeTheConnectionEndsOrNothing) {
    for (int round = 0; round < 100; ++round) {
        DeviceThatIsSaved device;
        const std::string whole = device.Save();
        std::atomic<bool> isSaving = false;
        std::thread saver([&] {
            std::string saved = whole;
            while (saved == whole) {
                isSaving = true;
                saved = device.Save();
            }
            EXPECT_EQ(saved, savedByADisconnectedDevice);
        });
        while (!isSaving) {
            std::this_thread::yield();
        }
        device.rig.device->Disconnect();
        saver.join();
    }
}

class LoadFromAStalledPipe : public DeviceTest {
protected:
    /// It has read everything available, and waits for more.
    LoadFromAStalledPipe() {
        rig.ConnectToGoodDevice();
        load = std::async(std::launch::async,
                          [this, device = rig.device] { return device->LoadSettingsFile(BstrOf(pipe.Path()).Get()); });
        pipe.Write("VIDEO PROC AMP:\nBlack: 7\n\n");
        EXPECT_TRUE(rig.link.AwaitSent("Black: 7\n"));
    }

    const StalledPipe pipe;
    std::future<HRESULT> load;
};

TEST_F(LoadFromAStalledPipe, EndsWithDisconnect) {
    EXPECT_EQ(load.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    const OneSecond limit;
    rig.device->Disconnect();
    EXPECT_EQ(load.get(), S_FALSE);
}

TEST_F(LoadFromAStalledPipe, EndsWithTheLastRelease) {
    const OneSecond limit;
    EXPECT_EQ(rig.Release(), 0U);
    EXPECT_EQ(load.get(), S_FALSE);
}

TEST_F(LoadFromAStalledPipe, EndsWithALoss) {
    const OneSecond limit;
    rig.link.Push(CommsEvent::SocketError);
    EXPECT_EQ(load.get(), S_FALSE);
}

TEST_F(LoadFromAStalledPipe, MakesNoOtherLoadWaitAfterTheEnd) {
    rig.device->Disconnect();
    EXPECT_EQ(load.get(), S_FALSE);
    const StalledPipe another;
    EXPECT_EQ(WithinASecond([&] { return rig.device->LoadSettingsFile(BstrOf(another.Path()).Get()); }), S_FALSE);
}

}  // namespace
}  // namespace Morquil
