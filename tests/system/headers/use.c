/* Uses the contract as a host in C does. */
#define COBJMACROS
#include "MorquilAPI.h"
#include "MorquilDelivery.h"
#include "MorquilEntry.h"
#include "MorquilWords.h"

HRESULT Use(IMorquilDevice* device) {
    void* delivery = NULL;
    UINT silence = 0;
    _MorquilAPIVideoMode mode = morquilAPIVideoModeNTSC;
    if (!MorquilVideoModeFromText("1080i50", &mode) || MorquilVideoModeText(mode) == NULL) {
        return E_FAIL;
    }
    const HRESULT result = IMorquilDevice_QueryInterface(device, &IID_IMorquilDelivery, &delivery);
    return FAILED(result) ? E_FAIL : IMorquilDelivery_GetSilence((IMorquilDelivery*)delivery, &silence);
}
