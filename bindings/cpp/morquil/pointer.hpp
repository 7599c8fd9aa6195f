#pragma once

#include <utility>

namespace morquil {

/// One reference to an object of the library.
template <class Raw>
class Pointer {
public:
    Pointer() = default;
    Pointer(const Pointer& other) : raw_(other.raw_) {
        if (raw_ != nullptr) {
            raw_->AddRef();
        }
    }
    Pointer(Pointer&& other) noexcept : raw_(std::exchange(other.raw_, nullptr)) {}
    Pointer& operator=(Pointer other) noexcept {
        std::swap(raw_, other.raw_);
        return *this;
    }
    ~Pointer() {
        if (raw_ != nullptr) {
            raw_->Release();
        }
    }

    /// Takes over a reference that the caller owns.
    static Pointer Adopt(Raw* raw) {
        Pointer pointer;
        pointer.raw_ = raw;
        return pointer;
    }

    Raw* Get() const { return raw_; }
    Raw* operator->() const { return raw_; }
    explicit operator bool() const { return raw_ != nullptr; }

private:
    Raw* raw_ = nullptr;
};

}  // namespace morquil
