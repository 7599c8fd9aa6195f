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
 * Gives the discovery object of the process, with one reference for the caller; makes it if there is none. Null when
 * memory is short. Any thread may call. On Windows CoCreateInstance of CLSID_CMorquilDiscovery gives the same object.
 */
MORQUIL_PUBLIC IMorquilDiscovery* GetMorquilDiscoveryInstance_0000(void);

#ifdef __cplusplus
}
#endif

#endif /* MORQUIL_ENTRY_H */
