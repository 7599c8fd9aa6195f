#define COBJMACROS
#include "tests/system/api/c_host.h"

HRESULT CHostNotify(IMorquilPropertyObserver* observer, _MorquilPropertySetId id) {
    return IMorquilPropertyObserver_PropertyChanged(observer, id);
}

HRESULT CHostAskForDevice(IUnknown* object, IMorquilDevice** device) {
    return object->lpVtbl->QueryInterface(object, &IID_IMorquilDevice, (void**)device);
}

UINT CHostTextLength(void) {
    BSTR text = SysAllocString(OLESTR("four"));
    const UINT length = SysStringLen(text);
    SysFreeString(text);
    return length;
}
