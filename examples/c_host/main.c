/*
 * A host in plain C: connects to a device, reads two values, changes one, and is notified when the device has done so.
 *
 *     morquil-c-host [ADDRESS]
 *
 * COBJMACROS makes the header define a macro per method: IMorquilDevice_GetDeviceName(device, &name) expands to
 * device->lpVtbl->GetDeviceName(device, &name).
 *
 * The library itself writes its diagnostics, and everything that it receives, to standard output. This host's own lines
 * start with "host: ", to distinguish them.
 */
#define COBJMACROS
#include <stdio.h>
#include <string.h>

#include "MorquilAPI.h"
#include "system.h"

/* ---- An object that the library can call: a table of functions, and a structure that begins with a pointer to it - */

static HRESULT STDMETHODCALLTYPE QueryInterface(IMorquilPropertyObserver* This, REFIID iid, void** object) {
    if (object == NULL) {
        return E_POINTER;
    }
    const int known = IsEqualIID(iid, &IID_IUnknown) || IsEqualIID(iid, &IID_IMorquilPropertyObserver);
    *object = known ? This : NULL;
    return known ? S_OK : E_NOINTERFACE;
}

/* This is a static object, so its references need not be counted. */
static ULONG STDMETHODCALLTYPE AddRef(IMorquilPropertyObserver* This) {
    (void)This;
    return 2;
}

static ULONG STDMETHODCALLTYPE Release(IMorquilPropertyObserver* This) {
    (void)This;
    return 1;
}

/* Called on a thread of the library, which waits until this returns: wake the host's own thread, and return. */
static HRESULT STDMETHODCALLTYPE PropertyChanged(IMorquilPropertyObserver* This, _MorquilPropertySetId id) {
    (void)This;
    (void)id;
    RingBell();
    return S_OK;
}

static IMorquilPropertyObserverVtbl observerMethods = {QueryInterface, AddRef, Release, PropertyChanged};
static IMorquilPropertyObserver observer = {&observerMethods};

/* ---- Text: the library uses UTF-16; this host shows a question mark for anything but ASCII ----------------------- */

static BSTR MakeText(const char* ascii) {
    BSTR text = SysAllocStringLen(NULL, (UINT)strlen(ascii));
    for (UINT i = 0; text != NULL && i < SysStringLen(text); ++i) {
        text[i] = (OLECHAR)(unsigned char)ascii[i];
    }
    return text;
}

static void SayName(BSTR name) {
    char ascii[64] = "";
    const UINT length = SysStringLen(name);
    for (UINT i = 0; i < length && i + 1 < sizeof ascii; ++i) {
        ascii[i] = (char)(name[i] < 0x80 ? name[i] : '?');
    }
    printf("\nhost: connected to \"%s\"\n", ascii);
}

static int Fail(const char* what, HRESULT result) {
    printf("\nhost: FAILED: %s: 0x%08x\n", what, (unsigned)result);
    return 1;
}

/* ---- Using a device ---------------------------------------------------------------------------------------------- */

static int ChangeMode(IMorquilOutputConfiguration* output) {
    _MorquilAPIVideoMode mode = morquilAPIVideoModeNTSC;
    HRESULT result = IMorquilOutputConfiguration_GetVideoMode(output, &mode);
    if (FAILED(result)) {
        return Fail("the output's video mode", result);
    }
    const _MorquilAPIVideoMode wanted =
        mode == morquilAPIVideoMode1080p50 ? morquilAPIVideoMode720p50 : morquilAPIVideoMode1080p50;
    printf("\nhost: setting the output's video mode from number %d to number %d...\n", (int)mode, (int)wanted);
    /* Queued, not done: the getter answers the new mode once the device has reported it. */
    result = IMorquilOutputConfiguration_SetVideoMode(output, wanted);
    if (FAILED(result)) {
        return Fail("setting the output's video mode", result);
    }
    while (mode != wanted) {
        if (!WaitForBell(5)) {
            return Fail("the device's answer", E_FAIL);
        }
        IMorquilOutputConfiguration_GetVideoMode(output, &mode);
    }
    printf("\nhost: the device reports video mode number %d\n", (int)mode);
    return 0;
}

static int UseDevice(IMorquilDevice* device) {
    BSTR name = NULL;
    HRESULT result = IMorquilDevice_GetDeviceName(device, &name);
    if (FAILED(result)) {
        return Fail("the device's name", result);
    }
    SayName(name);
    SysFreeString(name);

    void* output = NULL;
    result = IMorquilDevice_QueryInterface(device, &IID_IMorquilOutputConfiguration, &output);
    if (FAILED(result)) {
        return Fail("the output's interface", result);
    }
    IMorquilDevice_AddPropertyObserver(device, &observer, morquilOutputConfigurationPropertySetId);
    const int status = ChangeMode((IMorquilOutputConfiguration*)output);
    IMorquilDevice_RemovePropertyObserver(device, &observer, morquilOutputConfigurationPropertySetId);
    IMorquilOutputConfiguration_Release((IMorquilOutputConfiguration*)output);
    return status;
}

static int Run(const char* address) {
    IMorquilDiscovery* discovery = GetDiscovery();
    if (discovery == NULL) {
        return Fail("the library is not registered", E_FAIL);
    }
    printf("\nhost: connecting to %s...\n", address);
    BSTR addressText = MakeText(address);
    IMorquilDevice* device = NULL;
    _MorquilConnectToFailure reason = morquilConnectToFailureNoFailure;
    const HRESULT result = IMorquilDiscovery_Connect(discovery, addressText, &device, &reason);
    SysFreeString(addressText);
    int status = 0;
    if (SUCCEEDED(result)) {
        status = UseDevice(device);
        IMorquilDiscovery_Disconnect(discovery, device);
        IMorquilDevice_Release(device);
        printf("\nhost: disconnected\n");
    } else {
        status = Fail(reason == morquilConnectToFailureRemoteLock ? "the device is locked" : "no answer", result);
    }
    IMorquilDiscovery_Release(discovery);
    return status;
}

int main(int argumentCount, char** arguments) {
    if (!StartSystem()) {
        return Fail("starting the system's services", E_FAIL);
    }
    const int status = Run(argumentCount > 1 ? arguments[1] : "127.0.0.1");
    StopSystem();
    return status;
}
