// The library as its hosts use it, with what the benchmarks need of it.
#pragma once

#include <string>
#include <utility>

#include "MorquilAPI.h"

namespace Morquil::Bench {

/// One reference to an object of the library.
template <class Face>
class Reference {
public:
    Reference() = default;
    explicit Reference(Face* object) : object_(object) {}
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

    Face* operator->() const { return object_; }
    Face* Get() const { return object_; }

private:
    Face* object_ = nullptr;
};

using Device = Reference<IMorquilDevice>;

/// The discovery object of the process.
IMorquilDiscovery& Discovery();

/// Connects and waits; the device must be there, or the program ends.
Device Connect(const std::string& address);
/// Starts to connect.
Device ConnectAsync(const std::string& address, IMorquilConnectionObserver& observer);

/// One of a device's features.
template <class Face>
Reference<Face> FeatureOf(const Device& device, REFIID iid) {
    void* face = nullptr;
    device->QueryInterface(iid, &face);
    return Reference<Face>(static_cast<Face*>(face));
}

}  // namespace Morquil::Bench
