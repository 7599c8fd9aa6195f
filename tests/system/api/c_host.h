/* The interfaces as a host written in C sees them. */
#ifndef C_HOST_H
#define C_HOST_H

#include "MorquilAPI.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Calls observer->PropertyChanged(id) through the C form of the interface. */
HRESULT CHostNotify(IMorquilPropertyObserver* observer, _MorquilPropertySetId id);

/* Asks `object` for a device and returns the result of QueryInterface. */
HRESULT CHostAskForDevice(IUnknown* object, IMorquilDevice** device);

/* The length of a text that C allocated. */
UINT CHostTextLength(void);

#ifdef __cplusplus
}
#endif

#endif /* C_HOST_H */
