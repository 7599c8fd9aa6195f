/*
 * What differs between systems: where the first object comes from, and how one thread waits for another.
 */
#ifndef SYSTEM_H
#define SYSTEM_H

#include "MorquilAPI.h"

/* To be called once, before and after everything else. StartSystem answers 0 when something is missing. */
int StartSystem(void);
void StopSystem(void);

/* The discovery object, through which devices are connected, with one reference for the caller; NULL: no library. */
IMorquilDiscovery* GetDiscovery(void);

/* A bell: one thread rings, another waits for it, at most so many seconds. AwaitBell answers 0 when nobody rang. */
void RingBell(void);
int AwaitBell(int seconds);

#endif
