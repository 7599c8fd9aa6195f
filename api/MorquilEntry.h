/** \file
 * The library's own entry point. C and C++, on every system.
 */
#ifndef MORQUIL_ENTRY_H
#define MORQUIL_ENTRY_H

#include "MorquilAPI.h"

#ifndef MORQUIL_PUBLIC
#define MORQUIL_PUBLIC
#endif

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Returns the discovery object of the process; makes it if there is none. On Windows CoCreateInstance of
 * CLSID_CMorquilDiscovery returns the same object.
 * Ownership: the caller owns one reference.
 * Threads: any.
 * Returns: null when out of memory.
 */
MORQUIL_PUBLIC IMorquilDiscovery* GetMorquilDiscoveryInstance_0000(void);

#ifdef __cplusplus
}
#endif

#endif /* MORQUIL_ENTRY_H */
