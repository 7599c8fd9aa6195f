#pragma once

#include <cstdint>

namespace QRN::Core {

/// Names a thread while it exists; 0 names none. The system may give an ended thread's id to a new one.
using ThreadId = std::uintptr_t;

/// What a thread runs; the result is its exit code. No exception may leave it.
using ThreadFunction = std::uint32_t (*)(void* argument);

/// A started thread that has not been joined yet, or nothing.
struct ThreadHandle {
    explicit operator bool() const { return native != 0; }

    std::uintptr_t native = 0;
};

/// The result of `StartThread` when the memory for handing the function over is missing.
inline constexpr std::uint32_t noMemoryForThread = 0xC0000017;

ThreadId CurrentThreadId();

/// Starts a thread that runs `function(argument)`.
/// Ownership: the caller gives the handle back with `JoinThread`. The thread keeps the module that its code is in
///            mapped.
/// Threads:   `thread` and `id` are written before this returns, maybe not before the new thread runs: that one
///            asks `CurrentThreadId`.
/// Returns:   0, `noMemoryForThread`, or the system's error code; on failure nothing is written.
std::uint32_t StartThread(ThreadHandle& thread, ThreadFunction function, void* argument, ThreadId* id = nullptr);

/// Waits without limit for `thread` to end, tells its exit code if asked to, and empties the handle. The thread with
/// the id `exemptId` does not wait (it would wait for itself): it only lets the handle go, and the exit code is 0.
/// An empty handle is joined already.
/// Returns: always 0.
std::uint32_t JoinThread(ThreadHandle& thread, std::uint32_t* exitCode = nullptr, ThreadId exemptId = 0);

}  // namespace QRN::Core
