// A host that lets go of the library while a connection is still at work.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <thread>

#include "tests/host/complete_device.h"
#include "tests/host/host.h"
#include "tests/support/temporary_folder.h"

namespace Morquil::Test {
namespace {

/// A copy of the library, so that nobody else's use keeps it loaded.
class OwnLibrary {
public:
    OwnLibrary() : path_(folder_.PathOf(std::filesystem::path(LibraryPath()).filename().string())) {
        std::filesystem::copy_file(LibraryPath(), path_);
        library_.emplace(path_);
    }

    RawObject Discovery() const { return RawObject(library_->Find<void*()>("GetMorquilDiscoveryInstance_0000")()); }
    void Unload() { library_.reset(); }
    bool IsLoaded() const { return LoadedLibrary::IsLoaded(path_); }

private:
    TemporaryFolder folder_;
    std::string path_;
    std::optional<LoadedLibrary> library_;
};

TEST(Unloading, WaitsForTheConnectionThatIsStillAtWork) {
    OwnLibrary library;
    Testing::ScriptedDevice device(CompleteDevice());
    ConnectionObserver connection;
    PropertyObserver property;
    RawObject connected;
    // The last call that the host gets is its last chance to call the library itself.
    connection.InCall([&connected](const std::string& told) {
        if (told != "connected") {
            connected.Release();
        }
    });
    void* object = nullptr;
    {
        const HostText address(device.Address());
        ASSERT_EQ(library.Discovery().Call(Slot::connectAsync, address.Get(), &object, connection.Get()), ok);
    }
    connected = RawObject(object);
    ASSERT_TRUE(connection.AwaitCalls(1));
    ASSERT_EQ(connected.Call(Slot::addPropertyObserver, property.Get(), FourCharacters("vpap")), ok);

    library.Unload();
    device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_TRUE(property.AwaitCalls(1));
    EXPECT_TRUE(library.IsLoaded());

    device.HangUp();
    EXPECT_TRUE(connection.AwaitCalls(2));
    EXPECT_EQ(connection.Told(), (Strings{"connected", "disconnected cfnr"}));
    EXPECT_TRUE(connection.AwaitRelease());
    EXPECT_TRUE(property.AwaitRelease());

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (LoadedLibrary::canGo && library.IsLoaded() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_EQ(library.IsLoaded(), !LoadedLibrary::canGo);
}

}  // namespace
}  // namespace Morquil::Test
