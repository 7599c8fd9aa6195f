#include "core/critical_section.h"

namespace QRN::Core {

std::uint32_t CriticalSection::Initialise() {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&native, &attributes);
    pthread_mutexattr_destroy(&attributes);
    return 0;
}

void CriticalSection::Enter() {
    pthread_mutex_lock(&native);
}

void CriticalSection::Leave() {
    pthread_mutex_unlock(&native);
}

void CriticalSection::Delete() {
    pthread_mutex_destroy(&native);
}

}  // namespace QRN::Core
