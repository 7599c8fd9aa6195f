// The one thing in which hosts differ between systems: where the first object comes from.
#pragma once

#include "MorquilAPI.h"
#include "owned.h"

/// Sets up what the library needs, for as long as this object lives: COM on Windows, nothing elsewhere.
class ComRuntime {
public:
    ComRuntime();
    ComRuntime(const ComRuntime&) = delete;
    ComRuntime& operator=(const ComRuntime&) = delete;
    ~ComRuntime();
};

/// The discovery object, which connects devices; null when the library is missing.
Owned<IMorquilDiscovery> GetDiscovery();
