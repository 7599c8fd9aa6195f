#pragma once

#include <winsock2.h>
// winsock2.h comes first: windows.h would otherwise include the old winsock.h.
#include <windows.h>

#include <utility>

namespace Morquil {

/// Owns a kernel handle: an event, or the event of a socket.
class WindowsHandle {
public:
    WindowsHandle() = default;
    explicit WindowsHandle(HANDLE handle) : handle_(handle) {}
    ~WindowsHandle() { Close(); }
    WindowsHandle(WindowsHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    WindowsHandle& operator=(WindowsHandle&& other) noexcept {
        if (this != &other) {
            Close();
            handle_ = std::exchange(other.handle_, nullptr);
        }
        return *this;
    }

    bool IsOpen() const { return handle_ != nullptr; }
    HANDLE Get() const { return handle_; }

private:
    void Close() {
        if (IsOpen()) {
            CloseHandle(handle_);
        }
    }

    HANDLE handle_ = nullptr;
};

/// Owns a socket.
class WindowsSocket {
public:
    explicit WindowsSocket(SOCKET socket) : socket_(socket) {}
    ~WindowsSocket() {
        if (IsOpen()) {
            closesocket(socket_);
        }
    }
    WindowsSocket(const WindowsSocket&) = delete;
    WindowsSocket& operator=(const WindowsSocket&) = delete;

    bool IsOpen() const { return socket_ != INVALID_SOCKET; }
    SOCKET Get() const { return socket_; }
    SOCKET Detach() { return std::exchange(socket_, INVALID_SOCKET); }

private:
    SOCKET socket_;
};

}  // namespace Morquil
