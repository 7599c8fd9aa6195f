#include "core/condition.h"

namespace QRN::Core {

Condition::Condition() {
    InitializeConditionVariable(&native_);
}

// The system allocates nothing for a condition without waiters.
Condition::~Condition() = default;

void Condition::Wait(Lockable& lockable) {
    SleepConditionVariableCS(&native_, &lockable.section_.native, INFINITE);
}

void Condition::WakeAll() {
    WakeAllConditionVariable(&native_);
}

}  // namespace QRN::Core
