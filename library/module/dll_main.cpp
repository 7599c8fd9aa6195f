// The entry points that exist on Windows only.
#include "MorquilAPI.h"
#include "module/registration.h"

namespace {

HINSTANCE moduleHandle = nullptr;

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        moduleHandle = instance;
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

STDAPI DllRegisterServer() {
    return Morquil::RegisterServer(moduleHandle);
}

STDAPI DllUnregisterServer() {
    return Morquil::UnregisterServer(moduleHandle);
}
