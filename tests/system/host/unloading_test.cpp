// A host that unloads the library while a connection is still active.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <optional>
#include <thread>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/host/host.h"

namespace Morquil::Testing {
namespace {

/// A copy of the library, so that no other use keeps it loaded.
class OwnLibrary {
public:
    OwnLibrary() : path_(folder_.PathOf(std::filesystem::path(LibraryPath()).filename().string())) {
        std::filesystem::copy_file(LibraryPath(), path_);
        library_.emplace(path_);
    }

    RawObject ConnectAsync(const std::string& device, ConnectionObserver& observer) const {
        const HostText address(device);
        void* object = nullptr;
        EXPECT_EQ(Discovery().Call(Slot::connectAsync, address.Get(), &object, observer.Get()), ok);
        return RawObject(object);
    }
    RawObject Discovery() const { return RawObject(library_->Find<void*()>("GetMorquilDiscoveryInstance_0000")()); }
    void Unload() { library_.reset(); }
    bool IsLoaded() const { return LoadedLibrary::IsLoaded(path_); }
    /// Waits up to 5 s until it is unloaded; this is not signalled. Returns: whether it is as the system promises.
    bool AwaitGone() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (LoadedLibrary::canGo && IsLoaded() && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
        }
        return IsLoaded() != LoadedLibrary::canGo;
    }

private:
    TemporaryFolder folder_;
    std::string path_;
    std::optional<LoadedLibrary> library_;
};

TEST(Unloading, WaitsForTheConnectionThatIsStillAtWork) {
    OwnLibrary library;
    ScriptedDevice device(CompleteDevice());
    ConnectionObserver connection;
    PropertyObserver property;
    RawObject connected;
    // The last call that the host receives is its last chance to call the library.
    connection.InCall([&connected](const std::string& notification) {
        if (notification != "connected") {
            connected.Release();
        }
    });
    connected = library.ConnectAsync(device.Address(), connection);
    ASSERT_TRUE(connection.AwaitCalls(1));
    ASSERT_EQ(connected.Call(Slot::addPropertyObserver, property.Get(), FourCharacters("vpap")), ok);

    library.Unload();
    device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_TRUE(property.AwaitCalls(1));
    EXPECT_TRUE(library.IsLoaded());

    device.HangUp();
    EXPECT_TRUE(connection.AwaitCalls(2));
    EXPECT_EQ(connection.Notifications(), (Strings{"connected", "disconnected cfnr"}));
    EXPECT_TRUE(connection.AwaitRelease());
    EXPECT_TRUE(property.AwaitRelease());
    EXPECT_TRUE(library.AwaitGone());
}

// The thread that waits for a silent device reports the end itself once the connection thread has ended.
TEST(Unloading, WaitsForTheAttemptThatStillWaits) {
    OwnLibrary library;
    ScriptedDevice device(DeviceScript{.acknowledges = false});
    ConnectionObserver connection;
    std::promise<bool> isLoadedAtTheEnd;
    connection.InCall([&](const std::string&) { isLoadedAtTheEnd.set_value(library.IsLoaded()); });
    library.ConnectAsync(device.Address(), connection).Release();
    ASSERT_TRUE(device.AwaitHost());

    library.Unload();
    EXPECT_TRUE(library.IsLoaded());
    device.Send("PROTOCOL PREAMBLE:\nVersion: 1.21\n\n");

    EXPECT_TRUE(isLoadedAtTheEnd.get_future().get());
    EXPECT_EQ(connection.Notifications(), Strings{"disconnected cfif"});
    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_TRUE(connection.AwaitRelease());
    EXPECT_TRUE(library.AwaitGone());
}

}  // namespace
}  // namespace Morquil::Testing
