// The linker redirects every call of `name` to `__wrap_name`; `__real_name` is the system's own function; see
// tests/CMakeLists.txt.
#include <netdb.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>

#include "MorquilCom.h"
#include "tests/worlds/allocation/failing_system.h"
#include "tests/worlds/allocation/scarce_memory.h"

using Morquil::Testing::ScarceMemory;

namespace {

std::atomic<long> liveTexts{0};

using ThreadMain = void*(void*);

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker chooses these names
extern "C" {

void* __real_malloc(std::size_t size);
void* __wrap_malloc(std::size_t size);
void __real_SysFreeString(BSTR text);
void __wrap_SysFreeString(BSTR text);
int __real_getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** found);
int __wrap_getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** found);
int __real_eventfd(unsigned value, int flags);
int __wrap_eventfd(unsigned value, int flags);
int __real_socket(int domain, int type, int protocol);
int __wrap_socket(int domain, int type, int protocol);
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadMain* main, void* argument);
int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadMain* main, void* argument);

/// The library allocates only texts here.
void* __wrap_malloc(std::size_t size) {
    void* const memory = ScarceMemory::Grants() ? __real_malloc(size) : nullptr;
    liveTexts += memory != nullptr ? 1 : 0;
    return memory;
}

void __wrap_SysFreeString(BSTR text) {
    liveTexts -= text != nullptr ? 1 : 0;
    __real_SysFreeString(text);
}

int __wrap_getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** found) {
    return ScarceMemory::Grants() ? __real_getaddrinfo(host, service, hints, found) : EAI_MEMORY;
}

int __wrap_eventfd(unsigned value, int flags) {
    if (ScarceMemory::Grants()) {
        return __real_eventfd(value, flags);
    }
    errno = ENOMEM;
    return -1;
}

int __wrap_socket(int domain, int type, int protocol) {
    if (ScarceMemory::Grants()) {
        return __real_socket(domain, type, protocol);
    }
    errno = ENOBUFS;
    return -1;
}

int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadMain* main, void* argument) {
    return ScarceMemory::Grants() ? __real_pthread_create(thread, attributes, main, argument) : EAGAIN;
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

namespace Morquil::Testing {

void* PlainMemory(std::size_t size) {
    return __real_malloc(size);
}

long LiveTexts() {
    return liveTexts;
}

}  // namespace Morquil::Testing
