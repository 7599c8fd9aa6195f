#pragma once

#include <utility>

#include "MorquilAPI.h"

/// One reference to an object of the library; released when the owner is destroyed.
template <class Interface>
class Owned {
public:
    Owned() = default;
    /// Takes over one of the caller's references: methods that return an object have added one for the caller.
    explicit Owned(Interface* object) : object_(object) {}
    Owned(Owned&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Owned& operator=(Owned&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Owned() {
        if (object_ != nullptr) {
            object_->Release();
        }
    }

    explicit operator bool() const { return object_ != nullptr; }
    Interface* Get() const { return object_; }
    Interface* operator->() const { return object_; }

private:
    Interface* object_ = nullptr;
};

/// The features of a device (its proc amp, its outputs, ...) are interfaces of the same object.
template <class Feature>
Owned<Feature> FeatureOf(IMorquilDevice* device, REFIID iid) {
    void* feature = nullptr;
    device->QueryInterface(iid, &feature);
    return Owned<Feature>(static_cast<Feature*>(feature));
}
