#include "core/condition.h"

namespace QRN::Core {

Condition::Condition() {
    InitializeConditionVariable(&native_);
}

// The system keeps nothing for a condition that nobody waits on.
Condition::~Condition() = default;

void Condition::Wait(Lockable& lockable) {
    SleepConditionVariableCS(&native_, &lockable.section_.native, INFINITE);
}

void Condition::WakeAll() {
    WakeAllConditionVariable(&native_);
}

}  // namespace QRN::Core
