#include "MorquilEntry.h"
#include "discovery.h"

ComRuntime::ComRuntime() = default;

ComRuntime::~ComRuntime() = default;

Owned<IMorquilDiscovery> GetDiscovery() {
    return Owned<IMorquilDiscovery>(GetMorquilDiscoveryInstance_0000());
}
