/*
 * What differs between systems: where the first object comes from, and how one thread waits for another.
 */
#ifndef SYSTEM_H
#define SYSTEM_H

#include "MorquilAPI.h"

/* Call each once: StartSystem before everything else, StopSystem after it. StartSystem returns 0 on failure. */
int StartSystem(void);
void StopSystem(void);

/* The discovery object, which connects devices, with one reference for the caller; NULL if there is no library. */
IMorquilDiscovery* GetDiscovery(void);

/* A bell: one thread rings it, another waits for it. WaitForBell returns 0 when it has not been rung in time. */
void RingBell(void);
int WaitForBell(int seconds);

#endif
