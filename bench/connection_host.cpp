#include "bench/connection_host.h"

#include <cstdlib>
#include <iostream>

#include "MorquilEntry.h"

namespace Morquil::Bench {

namespace {

/// An address in the form that the interfaces expect.
class Address {
public:
    explicit Address(const std::string& text) : text_(SysAllocStringLen(nullptr, static_cast<UINT>(text.size()))) {
        for (std::size_t at = 0; at < text.size(); ++at) {
            text_[at] = static_cast<OLECHAR>(text[at]);
        }
    }
    ~Address() { SysFreeString(text_); }
    Address(const Address&) = delete;
    Address& operator=(const Address&) = delete;

    BSTR Get() const { return text_; }

private:
    BSTR text_;
};

Device Connected(HRESULT result, IMorquilDevice* device) {
    if (FAILED(result) || device == nullptr) {
        std::cerr << "The library cannot connect" << std::endl;
        std::exit(1);
    }
    return Device(device);
}

}  // namespace

IMorquilDiscovery& Discovery() {
    static IMorquilDiscovery* const discovery = GetMorquilDiscoveryInstance_0000();
    return *discovery;
}

Device Connect(const std::string& address) {
    IMorquilDevice* device = nullptr;
    _MorquilConnectToFailure reason = morquilConnectToFailureNoFailure;
    const HRESULT result = Discovery().Connect(Address(address).Get(), &device, &reason);
    return Connected(result, device);
}

Device ConnectAsync(const std::string& address, IMorquilConnectionObserver& observer) {
    IMorquilDevice* device = nullptr;
    const HRESULT result = Discovery().ConnectAsync(Address(address).Get(), &device, &observer);
    return Connected(result, device);
}

}  // namespace Morquil::Bench
