#include "core/thread.h"

#include <pthread.h>

#include <bit>
#include <memory>
#include <new>

namespace QRN::Core {
namespace {

struct ThreadStart {
    ThreadFunction function;
    void* argument;
};

void* RunThread(void* block) {
    const ThreadStart start = *static_cast<ThreadStart*>(block);
    delete static_cast<ThreadStart*>(block);
    return std::bit_cast<void*>(std::uintptr_t{start.function(start.argument)});
}

}  // namespace

ThreadId CurrentThreadId() {
    return static_cast<ThreadId>(pthread_self());
}

std::uint32_t StartThread(ThreadHandle& thread, ThreadFunction function, void* argument, ThreadId* id) {
    std::unique_ptr<ThreadStart> start(new (std::nothrow) ThreadStart{function, argument});
    if (start == nullptr) {
        return noMemoryForThread;
    }
    pthread_t created{};
    const int error = pthread_create(&created, nullptr, RunThread, start.get());
    if (error != 0) {
        return static_cast<std::uint32_t>(error);
    }
    static_cast<void>(start.release());  // owned by the new thread from here on
    thread.native = static_cast<std::uintptr_t>(created);
    if (id != nullptr) {
        *id = static_cast<ThreadId>(created);
    }
    return 0;
}

std::uint32_t JoinThread(ThreadHandle& thread, std::uint32_t* exitCode, ThreadId exemptId) {
    void* result = nullptr;
    if (thread) {
        const auto native = static_cast<pthread_t>(thread.native);
        if (CurrentThreadId() == exemptId) {
            pthread_detach(native);
        } else {
            pthread_join(native, &result);
        }
        thread.native = 0;
    }
    if (exitCode != nullptr) {
        *exitCode = static_cast<std::uint32_t>(std::bit_cast<std::uintptr_t>(result));
    }
    return 0;
}

}  // namespace QRN::Core
