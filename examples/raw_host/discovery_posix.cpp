#include "MorquilEntry.h"
#include "examples/raw_host/discovery.h"

ComRuntime::ComRuntime() = default;

ComRuntime::~ComRuntime() = default;

Owned<IMorquilDiscovery> GetDiscovery() {
    return Owned<IMorquilDiscovery>(GetMorquilDiscoveryInstance_0000());
}
