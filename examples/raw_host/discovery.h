// The one thing in which hosts differ between systems: where the first object comes from.
#pragma once

#include "MorquilAPI.h"
#include "owned.h"

/// What must be set up before the library is used, for as long as the object lives: COM on Windows, nothing elsewhere.
class ComRuntime {
public:
    ComRuntime();
    ComRuntime(const ComRuntime&) = delete;
    ComRuntime& operator=(const ComRuntime&) = delete;
    ~ComRuntime();
};

/// The discovery object, through which devices are connected; null when the library is not there.
Owned<IMorquilDiscovery> GetDiscovery();
