#pragma once

#include <unistd.h>

#include <utility>

namespace Morquil {

/// Owns a file descriptor.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~FileDescriptor() { Close(); }
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(other.Detach()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            Close();
            descriptor_ = other.Detach();
        }
        return *this;
    }

    bool IsOpen() const { return descriptor_ >= 0; }
    int Get() const { return descriptor_; }
    int Detach() { return std::exchange(descriptor_, -1); }

private:
    void Close() {
        if (IsOpen()) {
            close(descriptor_);
        }
    }

    int descriptor_ = -1;
};

}  // namespace Morquil
