#include "tests/system/host/host.h"

#include <gtest/gtest.h>

#include <utility>

namespace Morquil::Testing {

const LoadedLibrary& Library() {
    static const LoadedLibrary& library = *new LoadedLibrary();
    return library;
}

RawObject Discovery() {
    return RawObject(Library().Find<void*()>("GetMorquilDiscoveryInstance_0000")());
}

ConnectOutcome Connect(const std::string& address) {
    const HostText text(address);
    void* device = nullptr;
    std::int32_t reason = 0;
    const Result result = Discovery().Call(Slot::connect, text.Get(), &device, &reason);
    return {result, FourCharacterText(reason), RawObject(device)};
}

RawObject ConnectAsync(const std::string& address, HostObserver& observer) {
    const HostText text(address);
    void* device = nullptr;
    EXPECT_EQ(Discovery().Call(Slot::connectAsync, text.Get(), &device, observer.Get()), ok);
    return RawObject(device);
}

void Disconnect(const RawObject& device) {
    EXPECT_EQ(Discovery().Call(Slot::disconnect, device.Get()), ok);
}

std::u16string DeviceName(const RawObject& device) {
    HostText name;
    device.Call(Slot::getDeviceName, name.Out());
    return name.Text();
}

}  // namespace Morquil::Testing
