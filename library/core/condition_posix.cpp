#include "core/condition.h"

namespace QRN::Core {

Condition::Condition() {
    pthread_cond_init(&native_, nullptr);
}

Condition::~Condition() {
    pthread_cond_destroy(&native_);
}

void Condition::Wait(Lockable& lockable) {
    pthread_cond_wait(&native_, &lockable.section_.native);
}

void Condition::WakeAll() {
    pthread_cond_broadcast(&native_);
}

}  // namespace QRN::Core
