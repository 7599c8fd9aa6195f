#include <objbase.h>

#include "discovery.h"

ComRuntime::ComRuntime() {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
}

ComRuntime::~ComRuntime() {
    CoUninitialize();
}

Owned<IMorquilDiscovery> GetDiscovery() {
    // The library was registered with regsvr32: COM finds the file by its class.
    void* discovery = nullptr;
    CoCreateInstance(CLSID_CMorquilDiscovery, nullptr, CLSCTX_INPROC_SERVER, IID_IMorquilDiscovery, &discovery);
    return Owned<IMorquilDiscovery>(static_cast<IMorquilDiscovery*>(discovery));
}
