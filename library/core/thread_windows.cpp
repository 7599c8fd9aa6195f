#include "core/thread.h"

#include <windows.h>

#include <memory>
#include <new>

#include "core/own_module.h"

namespace QRN::Core {
namespace {

struct ThreadStart {
    ThreadFunction function;
    void* argument;
};

DWORD WINAPI RunThread(void* block) {
    const ThreadStart start = *static_cast<ThreadStart*>(block);
    delete static_cast<ThreadStart*>(block);
    const DWORD exitCode = start.function(start.argument);
    EndThreadOfOwnModule(exitCode);
}

}  // namespace

ThreadId CurrentThreadId() {
    return GetCurrentThreadId();
}

std::uint32_t StartThread(ThreadHandle& thread, ThreadFunction function, void* argument, ThreadId* id) {
    std::unique_ptr<ThreadStart> start(new (std::nothrow) ThreadStart{function, argument});
    if (start == nullptr) {
        return noMemoryForThread;
    }
    const HMODULE module = HoldOwnModule();
    DWORD createdId = 0;
    const HANDLE created = CreateThread(nullptr, 0, RunThread, start.get(), 0, &createdId);
    if (created == nullptr) {
        const DWORD error = GetLastError();
        FreeLibrary(module);
        return error;
    }
    static_cast<void>(start.release());  // owned by the new thread from here on
    thread.native = reinterpret_cast<std::uintptr_t>(created);
    if (id != nullptr) {
        *id = createdId;
    }
    return 0;
}

std::uint32_t JoinThread(ThreadHandle& thread, std::uint32_t* exitCode, ThreadId exemptId) {
    DWORD result = 0;
    if (thread) {
        const auto native = reinterpret_cast<HANDLE>(thread.native);
        if (CurrentThreadId() != exemptId) {
            WaitForSingleObject(native, INFINITE);
            GetExitCodeThread(native, &result);
        }
        CloseHandle(native);
        thread.native = 0;
    }
    if (exitCode != nullptr) {
        *exitCode = result;
    }
    return 0;
}

}  // namespace QRN::Core
