#pragma once

#include <cstdint>

namespace QRN::Core {

/// The system's manual-reset event, which `Event` is built on. Every other function takes a handle that
/// `CreateNativeEvent` returned. Errors are the system's codes, 0 for none.
/// Returns: null on failure, with the reason in `error`.
void* CreateNativeEvent(std::uint32_t& error);
void CloseNativeEvent(void* handle);
std::uint32_t SetNativeEvent(void* handle);
/// Waits `milliseconds`; negative: without limit.
std::uint32_t WaitNativeEvent(void* handle, std::int32_t milliseconds, bool& timedOut);

}  // namespace QRN::Core
