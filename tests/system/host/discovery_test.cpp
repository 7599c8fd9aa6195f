// The discovery object, and the ways to it, as a host knows them: names, identifiers and slots.
#include <gtest/gtest.h>

#include "tests/system/host/host.h"

namespace Morquil::Testing {
namespace {

TEST(DiscoverySlots, AreOneObjectForEveryone) {
    const RawObject first = Discovery();
    const RawObject second = Discovery();

    EXPECT_EQ(first.Get(), second.Get());
    EXPECT_EQ(first.References(), 2U);
}

TEST(DiscoverySlots, StartAfreshAfterTheLastRelease) {
    RawObject first = Discovery();
    EXPECT_EQ(first.Release(), 0U);

    const RawObject second = Discovery();
    EXPECT_EQ(second.References(), 1U);
}

TEST(DiscoverySlots, AnswerTheirTwoInterfacesOnly) {
    const RawObject discovery = Discovery();
    EXPECT_EQ(discovery.QueryInterface(Iid::unknown).Get(), discovery.Get());
    EXPECT_EQ(discovery.QueryInterface(Iid::discovery).Get(), discovery.Get());
    for (const char* const iid : {Iid::device, Iid::iterator, Iid::classFactory}) {
        const Guid guid = ToGuid(iid);
        void* out = &out;
        EXPECT_EQ(discovery.Call(0, &guid, &out), noInterface);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(discovery.Call(0, &guid, static_cast<void**>(nullptr)), nullPointer);
    }
    EXPECT_EQ(discovery.References(), 1U);
}

TEST(DiscoverySlots, FindNoDevicesAndLeaveThePointer) {
    const RawObject discovery = Discovery();
    void* list = &list;

    EXPECT_EQ(discovery.Call(Slot::findDevices, &list), ok);
    EXPECT_EQ(list, &list);
    EXPECT_EQ(discovery.Call(Slot::findDevices, static_cast<void**>(nullptr)), ok);
}

TEST(DiscoverySlots, RefuseNullPointersBeforeTheyConnect) {
    const RawObject discovery = Discovery();
    const HostText address(std::string_view("127.0.0.1"));
    ConnectionObserver observer;
    std::int32_t reason = 9;
    void* device = &device;
    void** const nowhere = nullptr;

    EXPECT_EQ(discovery.Call(Slot::connect, address.Get(), nowhere, &reason), nullPointer);
    EXPECT_EQ(discovery.Call(Slot::connect, address.Get(), &device, static_cast<std::int32_t*>(nullptr)), nullPointer);
    EXPECT_EQ(discovery.Call(Slot::connectAsync, address.Get(), nowhere, observer.Get()), nullPointer);
    EXPECT_EQ(discovery.Call(Slot::connectAsync, address.Get(), &device, static_cast<void*>(nullptr)), nullPointer);
    EXPECT_EQ(reason, 9);
    EXPECT_EQ(device, &device);
    EXPECT_TRUE(observer.Notifications().empty());
}

TEST(DiscoverySlots, TreatAMissingAddressAsAFailure) {
    void* device = &device;
    std::int32_t reason = 0;

    EXPECT_EQ(Discovery().Call(Slot::connect, static_cast<char16_t*>(nullptr), &device, &reason), failed);
    EXPECT_EQ(FourCharacterText(reason), "cfnr");
    EXPECT_EQ(device, &device);
}

TEST(DiscoverySlots, ComeOutOfTheClassFactory) {
    const Guid clsid = ToGuid(discoveryClass);
    const Guid iid = ToGuid(Iid::classFactory);
    const auto getClassObject = Library().Find<Result(const Guid*, const Guid*, void**)>("DllGetClassObject");
    void* made = nullptr;
    ASSERT_EQ(getClassObject(&clsid, &iid, &made), ok);
    RawObject factory(made);

    void* object = nullptr;
    EXPECT_EQ(factory.Call(3, static_cast<void*>(nullptr), &iid, &object), ok);  // CreateInstance
    const RawObject discovery(object);
    EXPECT_EQ(discovery.Get(), Discovery().Get());
    EXPECT_EQ(factory.Call(4, 1), notImplemented);  // LockServer
    EXPECT_EQ(factory.Release(), 0U);
}

}  // namespace
}  // namespace Morquil::Testing
