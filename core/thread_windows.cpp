#include "core/thread.h"

#include <windows.h>

#include <memory>
#include <new>

namespace QRN::Core {
namespace {

struct ThreadStart {
    ThreadFunction function;
    void* argument;
};

// The module that this code is in; with `extraFlags` 0 a reference to it is taken.
HMODULE OwnModule(DWORD extraFlags);

DWORD WINAPI RunThread(void* block) {
    const ThreadStart start = *static_cast<ThreadStart*>(block);
    delete static_cast<ThreadStart*>(block);
    const DWORD exitCode = start.function(start.argument);
    // Gives the reference that the starter took back and ends the thread in one step outside the module, which may be
    // unmapped by it.
    FreeLibraryAndExitThread(OwnModule(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT), exitCode);
}

HMODULE OwnModule(DWORD extraFlags) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | extraFlags, reinterpret_cast<LPCWSTR>(&RunThread),
                       &module);
    return module;
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
    // Taken before the thread exists: it must not run a single instruction of a module that is being unloaded.
    const HMODULE module = OwnModule(0);
    DWORD createdId = 0;
    const HANDLE created = CreateThread(nullptr, 0, RunThread, start.get(), 0, &createdId);
    if (created == nullptr) {
        const DWORD error = GetLastError();
        FreeLibrary(module);
        return error;
    }
    static_cast<void>(start.release());  // now the new thread's
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
