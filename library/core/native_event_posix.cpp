#include "core/native_event.h"

#include <pthread.h>

#include <cerrno>
#include <ctime>
#include <new>

namespace QRN::Core {
namespace {

// A condition variable on the monotonic clock, so that a change of the time of day neither shortens nor prolongs a
// wait.
struct NativeEvent {
    NativeEvent() {
        pthread_condattr_t attributes;
        pthread_condattr_init(&attributes);
        pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
        pthread_cond_init(&changed, &attributes);
        pthread_condattr_destroy(&attributes);
    }
    ~NativeEvent() {
        pthread_cond_destroy(&changed);
        pthread_mutex_destroy(&mutex);
    }
    NativeEvent(const NativeEvent&) = delete;
    NativeEvent& operator=(const NativeEvent&) = delete;

    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t changed;
    bool signalled = false;
};

NativeEvent& From(void* handle) {
    return *static_cast<NativeEvent*>(handle);
}

timespec Deadline(std::int32_t milliseconds) {
    constexpr long nanosecondsPerSecond = 1'000'000'000;
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    time.tv_sec += milliseconds / 1000;
    time.tv_nsec += milliseconds % 1000 * 1'000'000L;
    if (time.tv_nsec >= nanosecondsPerSecond) {
        time.tv_nsec -= nanosecondsPerSecond;
        ++time.tv_sec;
    }
    return time;
}

// Called with the mutex held. Returns 0 once signalled, otherwise an error number; ETIMEDOUT is one of them.
int WaitUntilSignalled(NativeEvent& event, std::int32_t milliseconds) {
    if (milliseconds < 0) {
        while (!event.signalled) {
            pthread_cond_wait(&event.changed, &event.mutex);
        }
        return 0;
    }
    const timespec deadline = Deadline(milliseconds);
    int error = 0;
    while (!event.signalled && error == 0) {
        error = pthread_cond_timedwait(&event.changed, &event.mutex, &deadline);
    }
    return event.signalled ? 0 : error;
}

}  // namespace

void* CreateNativeEvent(std::uint32_t& error) {
    NativeEvent* const event = new (std::nothrow) NativeEvent;
    error = event != nullptr ? 0 : ENOMEM;
    return event;
}

void CloseNativeEvent(void* handle) {
    delete &From(handle);
}

std::uint32_t SetNativeEvent(void* handle) {
    NativeEvent& event = From(handle);
    pthread_mutex_lock(&event.mutex);
    event.signalled = true;
    pthread_cond_broadcast(&event.changed);
    pthread_mutex_unlock(&event.mutex);
    return 0;
}

std::uint32_t WaitNativeEvent(void* handle, std::int32_t milliseconds, bool& timedOut) {
    NativeEvent& event = From(handle);
    pthread_mutex_lock(&event.mutex);
    const int error = WaitUntilSignalled(event, milliseconds);
    pthread_mutex_unlock(&event.mutex);
    timedOut = error == ETIMEDOUT;
    return timedOut ? 0 : static_cast<std::uint32_t>(error);
}

}  // namespace QRN::Core
