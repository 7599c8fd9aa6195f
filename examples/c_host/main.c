/*
 * A host in plain C: connects to a device, reads two values, changes one, and is notified of what the device made of
 * it.
 *
 *     morquil-c-host [ADDRESS]
 *
 * COBJMACROS makes the header define a macro per method: IMorquilDevice_GetDeviceName(device, &name) expands to
 * device->lpVtbl->GetDeviceName(device, &name).
 */
#define COBJMACROS
#include <stdio.h>
#include <string.h>

#include "MorquilAPI.h"
#include "MorquilDelivery.h"
#include "MorquilWords.h"
#include "system.h"

/* ---- An object that the library can call: a table of functions, and a structure that begins with a pointer to it - */

static HRESULT STDMETHODCALLTYPE QueryInterface(IMorquilReceiptObserver* This, REFIID iid, void** object) {
    if (object == NULL) {
        return E_POINTER;
    }
    const int known = IsEqualIID(iid, &IID_IUnknown) || IsEqualIID(iid, &IID_IMorquilReceiptObserver);
    *object = known ? This : NULL;
    return known ? S_OK : E_NOINTERFACE;
}

/* This is a static object, so its references need not be counted. */
static ULONG STDMETHODCALLTYPE AddRef(IMorquilReceiptObserver* This) {
    (void)This;
    return 2;
}

static ULONG STDMETHODCALLTYPE Release(IMorquilReceiptObserver* This) {
    (void)This;
    return 1;
}

/* What became of the change. Written by the library's thread before it rings the bell. */
static UINT refusedMessages;
static UINT adjustedBlocks;
static int connectionHasEnded;

/* Called on a thread of the library, which waits until they return: note what happened, wake the host's own thread. */
static HRESULT STDMETHODCALLTYPE Answered(IMorquilReceiptObserver* This, UINT64 receipt, UINT acknowledged,
                                          UINT refused, UINT kept) {
    (void)This, (void)receipt, (void)acknowledged, (void)kept;
    refusedMessages = refused;
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE Settled(IMorquilReceiptObserver* This, UINT64 receipt, UINT confirmed, UINT adjusted) {
    (void)This, (void)receipt, (void)confirmed;
    adjustedBlocks = adjusted;
    RingBell();
    return S_OK;
}

static HRESULT STDMETHODCALLTYPE Lost(IMorquilReceiptObserver* This, UINT64 receipt, UINT acknowledged, UINT refused,
                                      UINT unanswered, UINT unsent) {
    (void)This, (void)receipt, (void)acknowledged, (void)refused, (void)unanswered, (void)unsent;
    connectionHasEnded = 1;
    RingBell();
    return S_OK;
}

static IMorquilReceiptObserverVtbl observerMethods = {QueryInterface, AddRef, Release, Answered, Settled, Lost};
static IMorquilReceiptObserver observer = {&observerMethods};

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
    printf("connected to \"%s\"\n", ascii);
}

static int Fail(const char* what, HRESULT result) {
    printf("FAILED: %s: 0x%08x\n", what, (unsigned)result);
    return 1;
}

/* ---- Using a device ---------------------------------------------------------------------------------------------- */

/* Waits until the device has reported what was queued since OpenReceipt, or has refused it. */
static int AwaitReceipt(IMorquilDelivery* delivery, UINT64 receipt) {
    const HRESULT result = IMorquilDelivery_MarkReceipt(delivery, receipt);
    if (FAILED(result)) {
        return Fail("sending the change", result);
    }
    if (!WaitForBell(10)) {
        IMorquilDelivery_CancelReceipt(delivery, receipt);
        return Fail("the device has not answered in time", E_FAIL);
    }
    if (connectionHasEnded || refusedMessages != 0 || adjustedBlocks != 0) {
        return Fail(connectionHasEnded ? "the device is lost" : "the device has another video mode", E_FAIL);
    }
    return 0;
}

/* A value from another version of the library may have no word here. */
static const char* NameOf(_MorquilAPIVideoMode mode) {
    const char* const word = MorquilVideoModeText(mode);
    return word != NULL ? word : "another mode";
}

static int ChangeMode(IMorquilOutputConfiguration* output, IMorquilDelivery* delivery) {
    _MorquilAPIVideoMode mode = morquilAPIVideoModeNTSC;
    HRESULT result = IMorquilOutputConfiguration_GetVideoMode(output, &mode);
    if (FAILED(result)) {
        return Fail("the output's video mode", result);
    }
    const _MorquilAPIVideoMode wanted =
        mode == morquilAPIVideoMode1080p50 ? morquilAPIVideoMode720p50 : morquilAPIVideoMode1080p50;
    printf("setting the output's video mode from %s to %s...\n", NameOf(mode), NameOf(wanted));
    UINT64 receipt = 0;
    result = IMorquilDelivery_OpenReceipt(delivery, &observer, morquilReceiptThisThread, &receipt);
    if (SUCCEEDED(result)) {
        /* Queued, not done: the getter answers the new mode once the device has reported it. */
        result = IMorquilOutputConfiguration_SetVideoMode(output, wanted);
    }
    if (FAILED(result)) {
        IMorquilDelivery_CancelReceipt(delivery, receipt);
        return Fail("setting the output's video mode", result);
    }
    const int status = AwaitReceipt(delivery, receipt);
    if (status == 0) {
        IMorquilOutputConfiguration_GetVideoMode(output, &mode);
        printf("the device reports %s\n", NameOf(mode));
    }
    return status;
}

static int UseDevice(IMorquilDevice* device) {
    BSTR name = NULL;
    const HRESULT result = IMorquilDevice_GetDeviceName(device, &name);
    if (FAILED(result)) {
        return Fail("the device's name", result);
    }
    SayName(name);
    SysFreeString(name);

    void* output = NULL;
    void* delivery = NULL;
    IMorquilDevice_QueryInterface(device, &IID_IMorquilOutputConfiguration, &output);
    IMorquilDevice_QueryInterface(device, &IID_IMorquilDelivery, &delivery);
    int status = 0;
    if (output != NULL && delivery != NULL) {
        status = ChangeMode((IMorquilOutputConfiguration*)output, (IMorquilDelivery*)delivery);
    } else {
        status = Fail("the interfaces of the device", E_NOINTERFACE);
    }
    if (output != NULL) {
        IMorquilOutputConfiguration_Release((IMorquilOutputConfiguration*)output);
    }
    if (delivery != NULL) {
        IMorquilDelivery_Release((IMorquilDelivery*)delivery);
    }
    return status;
}

/* The library prints its messages and what devices send, if a host does not switch that off. */
static void SilenceLibrary(IMorquilDiscovery* discovery) {
    void* console = NULL;
    if (SUCCEEDED(IMorquilDiscovery_QueryInterface(discovery, &IID_IMorquilConsole, &console))) {
        IMorquilConsole_SetOutput((IMorquilConsole*)console, morquilConsoleSilent, NULL);
        IMorquilConsole_Release((IMorquilConsole*)console);
    }
}

static int Run(const char* address) {
    IMorquilDiscovery* discovery = GetDiscovery();
    if (discovery == NULL) {
        return Fail("the library is not registered", E_FAIL);
    }
    SilenceLibrary(discovery);
    printf("connecting to %s...\n", address);
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
        printf("disconnected\n");
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
