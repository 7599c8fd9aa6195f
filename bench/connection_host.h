// The parts of the library that the benchmarks use, called as a host calls them.
#pragma once

#include <string>
#include <utility>

#include "MorquilAPI.h"

namespace Morquil::Bench {

/// One reference to an object of the library.
template <class RawInterface>
class Reference {
public:
    Reference() = default;
    explicit Reference(RawInterface* object) : object_(object) {}
    Reference(Reference&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Reference& operator=(Reference&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Reference() {
        if (object_ != nullptr) {
            object_->Release();
        }
    }

    RawInterface* operator->() const { return object_; }
    RawInterface* Get() const { return object_; }

private:
    RawInterface* object_ = nullptr;
};

using Device = Reference<IMorquilDevice>;

/// The discovery object of the process.
IMorquilDiscovery& Discovery();

/// Connects and waits; ends the program if that fails.
Device Connect(const std::string& address);
/// Starts connecting.
Device ConnectAsync(const std::string& address, IMorquilConnectionObserver& observer);

/// One of a device's features.
template <class RawInterface>
Reference<RawInterface> FeatureOf(const Device& device, REFIID iid) {
    void* feature = nullptr;
    device->QueryInterface(iid, &feature);
    return Reference<RawInterface>(static_cast<RawInterface*>(feature));
}

}  // namespace Morquil::Bench
