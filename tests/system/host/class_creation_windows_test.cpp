// Windows only: hosts that get the class from COM, on threads of either kind, and connect through it.
#include <gtest/gtest.h>
#include <windows.h>

// windows.h comes first.
#include <objbase.h>

#include <cstring>
#include <thread>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/system/host/host.h"
#include "tests/system/host/watched_device.h"

namespace Morquil::Testing {
namespace {

GUID ToSystemGuid(const char* text) {
    const Guid guid = ToGuid(text);
    GUID result;
    static_assert(sizeof result == sizeof guid);
    std::memcpy(&result, &guid, sizeof result);
    return result;
}

class ClassCreation : public testing::Test {
protected:
    ClassCreation() { EXPECT_EQ(Library().Find<Result STDAPICALLTYPE()>("DllRegisterServer")(), ok); }
    ~ClassCreation() override { EXPECT_EQ(Library().Find<Result STDAPICALLTYPE()>("DllUnregisterServer")(), ok); }

    static void* Create() {
        const GUID clsid = ToSystemGuid(discoveryClass);
        const GUID iid = ToSystemGuid(Iid::discovery);
        void* object = nullptr;
        EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, &object), S_OK);
        return object;
    }

    /// On its own thread, which has entered COM in this way.
    void ConnectFromThread(DWORD apartment) {
        std::thread([apartment] {
            ASSERT_EQ(CoInitializeEx(nullptr, apartment), S_OK);
            {
                ScriptedDevice script(CompleteDevice());
                const RawObject discovery(Create());
                ASSERT_TRUE(discovery);
                // The object itself: "Both" apartments use it without a proxy.
                EXPECT_EQ(discovery.Get(), Discovery().Get());
                const HostText address(script.Address());
                void* made = nullptr;
                std::int32_t reason = 0;
                EXPECT_EQ(discovery.Call(Slot::connect, address.Get(), &made, &reason), ok);
                const RawObject device(made);
                ASSERT_TRUE(device);
                EXPECT_EQ(DeviceName(device), u"Scripted");
                {
                    WatchedDevice watched(script, device);
                    EXPECT_EQ(watched.Report("VIDEO PROC AMP:\nGain: 7\n\n"), "vpap");
                }
                Disconnect(device);
            }
            CoUninitialize();
        }).join();
    }
};

TEST_F(ClassCreation, ServesAHostInTheMultithreadedApartment) {
    ConnectFromThread(COINIT_MULTITHREADED);
}

TEST_F(ClassCreation, ServesAHostInAnApartmentOfItsOwn) {
    ConnectFromThread(COINIT_APARTMENTTHREADED);
}

}  // namespace
}  // namespace Morquil::Testing
