#include "core/static_lock.h"

namespace QRN::Core {

void StaticLock::Enter() NO_THREAD_SAFETY_ANALYSIS {
    pthread_mutex_lock(&native_);
}

void StaticLock::Leave() NO_THREAD_SAFETY_ANALYSIS {
    pthread_mutex_unlock(&native_);
}

}  // namespace QRN::Core
