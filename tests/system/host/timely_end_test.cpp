// A host that ends on another thread than the one that connected, while the library is inside one of its calls:
// Disconnect and the last Release return within a second, whether the device falls silent or floods.
#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/watchdog.h"
#include "tests/system/host/flood.h"
#include "tests/system/host/host.h"

namespace Morquil::Testing {
namespace {

enum class Manner { Silent, Flooding };
enum class During { Connected, PropertyChanged, Disconnected };
enum class Ending { Disconnect, LastRelease };

/// The first call of a kind lasts until another thread has begun to end; how far that has got by then is left to
/// chance.
class EndOnAnotherThread : public testing::TestWithParam<std::tuple<Manner, During, Ending>> {
protected:
    template <class Parameter>
    static bool Is(Parameter value) {
        return std::get<Parameter>(GetParam()) == value;
    }

    void Hold(HostObserver& observer, const char* call) {
        observer.InCall([this, call, isFirst = true](const std::string& notification) mutable {
            if (notification.starts_with(call) && std::exchange(isFirst, false)) {
                called.set_value();
                begun.get_future().wait();
            }
        });
    }
    void HoldCall() {
        if (Is(During::PropertyChanged)) {
            Hold(property, "vpap");
        } else {
            Hold(connection, Is(During::Connected) ? "connected" : "disconnected");
        }
    }
    /// One change waits for its acknowledgement, another one is queued after it.
    void FallSilent() {
        device.SetAcknowledging(false);
        const RawObject amp = object.QueryInterface(Iid::videoProcAmp);
        EXPECT_EQ(amp.Call(3, 9), ok);
        EXPECT_EQ(device.NextChange(), "VIDEO PROC AMP:\nGain: 9\n\n");
        EXPECT_EQ(amp.Call(6, 9), ok);
    }
    void Provoke() {
        if (Is(During::Connected)) {
            return;
        }
        ASSERT_TRUE(connection.AwaitCalls(1));
        ASSERT_EQ(object.Call(Slot::addPropertyObserver, property.Get(), FourCharacters("vpap")), ok);
        if (Is(Manner::Silent)) {
            FallSilent();
        }
        if (Is(During::PropertyChanged)) {
            device.Send("VIDEO PROC AMP:\nGain: -7\n\n");
        } else {
            device.HangUp();
        }
    }
    void End() {
        called.get_future().wait();
        begun.set_value();
        const OneSecond limit;
        if (Is(Ending::Disconnect)) {
            Disconnect(object);
        } else {
            object.Release();
        }
    }

    const Watchdog watchdog;
    std::promise<void> called;
    std::promise<void> begun;
    ConnectionObserver connection;
    PropertyObserver property;
    ScriptedDevice device{CompleteDevice()};
    RawObject object;
};

TEST_P(EndOnAnotherThread, ReturnsWithinASecond) {
    HoldCall();
    std::optional<Flood> flood;
    if (Is(Manner::Flooding)) {
        flood.emplace(device);
    }
    object = ConnectAsync(device.Address(), connection);
    Provoke();

    std::thread([this] { End(); }).join();

    WithinASecond([this] { object.Release(); });
    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_TRUE(connection.AwaitRelease());
    EXPECT_TRUE(property.AwaitRelease());
}

std::string CellName(const testing::TestParamInfo<EndOnAnotherThread::ParamType>& cell) {
    const auto [manner, during, ending] = cell.param;
    const std::string device = manner == Manner::Silent ? "Silent" : "Flooding";
    const std::string call = during == During::Connected         ? "Connected"
                             : during == During::PropertyChanged ? "PropertyChanged"
                                                                 : "Disconnected";
    return device + "_" + call + (ending == Ending::Disconnect ? "_Disconnect" : "_LastRelease");
}

INSTANTIATE_TEST_SUITE_P(EveryCell, EndOnAnotherThread,
                         testing::Combine(testing::Values(Manner::Silent, Manner::Flooding),
                                          testing::Values(During::Connected, During::PropertyChanged,
                                                          During::Disconnected),
                                          testing::Values(Ending::Disconnect, Ending::LastRelease)),
                         CellName);

}  // namespace
}  // namespace Morquil::Testing
