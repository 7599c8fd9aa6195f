#pragma once

#include <cstdint>

namespace QRN::Core {

/// Identifies a thread while it exists; 0 is no thread. The system may reuse the id of a thread that has ended.
using ThreadId = std::uintptr_t;

/// A thread's function. Its result is the thread's exit code. It must not throw.
using ThreadFunction = std::uint32_t (*)(void* argument);

/// A started thread that has not been joined yet, or nothing.
struct ThreadHandle {
    explicit operator bool() const { return native != 0; }

    std::uintptr_t native = 0;
};

/// The result of `StartThread` when there is no memory to pass the function to the new thread.
inline constexpr std::uint32_t noMemoryForThread = 0xC0000017;

ThreadId CurrentThreadId();

/// Starts a thread that runs `function(argument)`.
/// Ownership: the caller releases the handle with `JoinThread`. The thread keeps the module that contains its code
///            mapped.
/// Threads:   `thread` and `id` are written before this returns, but perhaps not before the new thread runs. The new
///            thread calls `CurrentThreadId` instead.
/// Returns:   0, `noMemoryForThread`, or the system's error code; on failure nothing is written.
std::uint32_t StartThread(ThreadHandle& thread, ThreadFunction function, void* argument, ThreadId* id = nullptr);

/// Waits without limit for `thread` to end, stores its exit code in `exitCode` if that is not null, and empties the
/// handle. A caller whose own id is `exemptId` does not wait, since it would wait for itself: it only releases the
/// handle, and the exit code is 0. An empty handle counts as joined.
/// Returns: always 0.
std::uint32_t JoinThread(ThreadHandle& thread, std::uint32_t* exitCode = nullptr, ThreadId exemptId = 0);

}  // namespace QRN::Core
