#include "core/static_lock.h"

namespace QRN::Core {

void StaticLock::Enter() NO_THREAD_SAFETY_ANALYSIS {
    AcquireSRWLockExclusive(&native_);
}

void StaticLock::Leave() NO_THREAD_SAFETY_ANALYSIS {
    ReleaseSRWLockExclusive(&native_);
}

}  // namespace QRN::Core
