/* Uses the contract as a host in C does. */
#define COBJMACROS
#include "MorquilAPI.h"
#include "MorquilDelivery.h"
#include "MorquilEntry.h"

HRESULT Use(IMorquilDevice* device) {
    void* delivery = NULL;
    UINT silence = 0;
    const HRESULT result = IMorquilDevice_QueryInterface(device, &IID_IMorquilDelivery, &delivery);
    return FAILED(result) ? E_FAIL : IMorquilDelivery_GetSilence((IMorquilDelivery*)delivery, &silence);
}
