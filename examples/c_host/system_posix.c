#define _POSIX_C_SOURCE 200809L
#include "system.h"

#include <errno.h>
#include <semaphore.h>
#include <time.h>

#include "MorquilEntry.h"

static sem_t bell;

int StartSystem(void) {
    return sem_init(&bell, 0, 0) == 0;
}

void StopSystem(void) {
    sem_destroy(&bell);
}

IMorquilDiscovery* GetDiscovery(void) {
    return GetMorquilDiscoveryInstance_0000();
}

void RingBell(void) {
    sem_post(&bell);
}

int WaitForBell(int seconds) {
    struct timespec end;
    clock_gettime(CLOCK_REALTIME, &end);
    end.tv_sec += seconds;
    int result = sem_timedwait(&bell, &end);
    while (result != 0 && errno == EINTR) {
        result = sem_timedwait(&bell, &end);
    }
    return result == 0;
}
