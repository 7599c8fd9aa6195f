// Settings files: an old one is replaced only by the settings of a device that is connected all the time.
#include <gtest/gtest.h>

#include <fstream>
#include <future>
#include <set>
#include <string>

#include "tests/kit/temporary_folder.h"
#include "tests/system/cpp/connected.h"
#include "tests/system/cpp/fake_device.h"

namespace Morquil::Testing {
namespace {

using Names = std::set<std::string>;

class CppSettingsFile : public testing::Test {
protected:
    CppSettingsFile() {
        fake->onSave = [](const std::string& name) {
            std::ofstream(ToPath(name), std::ios::binary) << "new";
            return S_FALSE;
        };
    }

    template <class Expected>
    static std::string FailureOf(const morquil::Device& saved, const std::string& file) {
        try {
            saved.SaveSettingsFile(file);
        } catch (const Expected& error) {
            return error.what();
        }
        return "(none)";
    }

    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "old");
    FakeDevice* const fake = new FakeDevice;
    const morquil::Device device{morquil::Pointer<IMorquilDiscovery>(), morquil::Pointer<IMorquilDevice>::Adopt(fake),
                                 std::make_shared<const std::atomic<bool>>(true)};
    const std::string notComplete =
        "Device::SaveSettingsFile: the device is not connected, or has not reported its complete state";
};

TEST_F(CppSettingsFile, IsReplacedAsAWhole) {
    std::string seen;
    fake->onSave = [&](const std::string& name) {
        std::ofstream(ToPath(name), std::ios::binary) << "new";
        seen = ContentOf(path);
        return S_FALSE;
    };
    device.SaveSettingsFile(path);
    EXPECT_EQ(seen, "old");
    EXPECT_EQ(ContentOf(path), "new");
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
}

TEST_F(CppSettingsFile, IsMadeWhereThereIsNone) {
    const std::string name = "settings \xc3\xa4.txt";
    device.SaveSettingsFile(folder.PathOf(name));
    EXPECT_EQ(ContentOf(folder.PathOf(name)), "new");
    EXPECT_EQ(folder.Names(), (Names{"settings.txt", name}));
}

TEST_F(CppSettingsFile, IsAsItWasWhenTheDeviceIsLostMeanwhile) {
    fake->onSave = [&](const std::string& name) {
        std::ofstream(ToPath(name), std::ios::binary) << "nothing";
        fake->isKnown = false;
        return S_FALSE;
    };
    EXPECT_EQ(FailureOf<morquil::NotKnown>(device, path), notComplete);
    EXPECT_EQ(ContentOf(path), "old");
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
}

TEST_F(CppSettingsFile, IsNotMadeWhenTheDeviceIsLostMeanwhile) {
    fake->onSave = [&](const std::string& name) {
        std::ofstream(ToPath(name), std::ios::binary) << "nothing";
        fake->isKnown = false;
        return S_FALSE;
    };
    EXPECT_EQ(FailureOf<morquil::NotKnown>(device, folder.PathOf("new.txt")), notComplete);
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
}

TEST_F(CppSettingsFile, GoesToADeviceAsItIs) {
#ifdef _WIN32
    const std::string nullDevice = "NUL";
#else
    const std::string nullDevice = "/dev/null";
#endif
    std::string seen;
    fake->onSave = [&](const std::string& name) {
        seen = name;
        return S_FALSE;
    };
    device.SaveSettingsFile(nullDevice);
    EXPECT_EQ(seen, nullDevice);
}

TEST_F(CppSettingsFile, IsAsItWasWhenItMayNotBeWritten) {
    using std::filesystem::perms;
    std::filesystem::permissions(ToPath(path), perms::owner_read);
    EXPECT_THROW(device.SaveSettingsFile(path), morquil::Error);
    EXPECT_EQ(ContentOf(path), "old");
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
    std::filesystem::permissions(ToPath(path), perms::owner_read | perms::owner_write);
}

TEST_F(CppSettingsFile, IsAsItWasWhenNoneCanBeMadeBesideIt) {
    fake->onSave = [](const std::string&) { return S_OK; };
    EXPECT_EQ(FailureOf<morquil::Error>(device, path), "Device::SaveSettingsFile: \"" + path + "\" cannot be written");
    EXPECT_EQ(ContentOf(path), "old");
}

TEST_F(CppSettingsFile, KeepsItsPermissions) {
    using std::filesystem::perms;
    for (const perms mode : {perms::owner_read | perms::owner_write, perms(0644)}) {
        std::filesystem::permissions(ToPath(path), mode);
        const perms before = std::filesystem::status(ToPath(path)).permissions();
        device.SaveSettingsFile(path);
        EXPECT_EQ(std::filesystem::status(ToPath(path)).permissions(), before);
    }
}

TEST_F(CppSettingsFile, IsNotReplacedWhenItIsAFolderOrHasNoName) {
    using namespace std::string_literals;
    fake->onSave = [](const std::string&) { return S_OK; };
    EXPECT_THROW(device.SaveSettingsFile(folder.PathOf("")), morquil::Error);
    EXPECT_THROW(device.SaveSettingsFile(folder.PathOf("settings.txt\0x"s)), morquil::Error);
    EXPECT_EQ(ContentOf(path), "old");
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
}

TEST_F(CppSettingsFile, HoldsWhatAConnectedDeviceHasReported) {
    const Connected connected;
    connected.host.SaveSettingsFile(path);
    EXPECT_NE(ContentOf(path).find("VIDEO PROC AMP:\nGain: 0\n"), std::string::npos);
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
}

TEST_F(CppSettingsFile, IsAsItWasOnceTheConnectionHasEnded) {
    const Connected connected;
    connected.host.Disconnect();
    EXPECT_EQ(FailureOf<morquil::NotKnown>(connected.host, path), notComplete);
    EXPECT_EQ(ContentOf(path), "old");
}

TEST_F(CppSettingsFile, IsAsItWasBeforeTheCompleteStateHasArrived) {
    DeviceScript script = CompleteDevice();
    script.answers.erase("AUDIO AVAILABILITY");
    ScriptedDevice incomplete(script);
    std::promise<void> isConnected;
    const morquil::Connecting connecting =
        morquil::ConnectAsync(incomplete.Address(), {[&] { isConnected.set_value(); }, {}});
    // The device's name is known by then, and almost everything else.
    while (incomplete.NextBlock() != "PRESET AVAILABILITY:\n\n") {
    }
    EXPECT_EQ(FailureOf<morquil::NotKnown>(connecting.device, path), notComplete);
    EXPECT_EQ(ContentOf(path), "old");
    incomplete.Send("AUDIO AVAILABILITY:\n\n");
    isConnected.get_future().wait();
    connecting.device.SaveSettingsFile(path);
    EXPECT_NE(ContentOf(path).find("VIDEO PROC AMP:\nGain: 0\n"), std::string::npos);
    connecting.device.Disconnect();
    EXPECT_THROW(connecting.device.SaveSettingsFile(path), morquil::NotKnown);
}

}  // namespace
}  // namespace Morquil::Testing
