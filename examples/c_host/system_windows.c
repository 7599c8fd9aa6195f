#include "system.h"

#include <objbase.h>

static HANDLE bell;

int StartSystem(void) {
    bell = CreateSemaphoreA(NULL, 0, MAXLONG, NULL);
    return bell != NULL && SUCCEEDED(CoInitializeEx(NULL, COINIT_MULTITHREADED));
}

void StopSystem(void) {
    CoUninitialize();
    CloseHandle(bell);
}

IMorquilDiscovery* GetDiscovery(void) {
    void* discovery = NULL;
    CoCreateInstance(&CLSID_CMorquilDiscovery, NULL, CLSCTX_INPROC_SERVER, &IID_IMorquilDiscovery, &discovery);
    return (IMorquilDiscovery*)discovery;
}

void RingBell(void) {
    ReleaseSemaphore(bell, 1, NULL);
}

int WaitForBell(int seconds) {
    return WaitForSingleObject(bell, (DWORD)seconds * 1000) == WAIT_OBJECT_0;
}
