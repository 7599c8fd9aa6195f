#include "core/native_event.h"

#include <windows.h>

namespace QRN::Core {

void* CreateNativeEvent(std::uint32_t& error) {
    const HANDLE handle = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    error = handle != nullptr ? 0 : GetLastError();
    return handle;
}

void CloseNativeEvent(void* handle) {
    CloseHandle(handle);
}

std::uint32_t SetNativeEvent(void* handle) {
    return SetEvent(handle) ? 0 : GetLastError();
}

std::uint32_t WaitNativeEvent(void* handle, std::int32_t milliseconds, bool& timedOut) {
    const DWORD limit = milliseconds < 0 ? INFINITE : static_cast<DWORD>(milliseconds);
    const DWORD result = WaitForSingleObject(handle, limit);
    timedOut = result == WAIT_TIMEOUT;
    return result == WAIT_FAILED ? GetLastError() : 0;
}

}  // namespace QRN::Core
