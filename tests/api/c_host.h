/* What a host that is written in C sees of the interfaces. */
#ifndef C_HOST_H
#define C_HOST_H

#include "MorquilAPI.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Calls observer->PropertyChanged(id) through the C form of the interface. */
HRESULT CHostTell(IMorquilPropertyObserver* observer, _MorquilPropertySetId id);

/* Asks `object` for a device and gives back what QueryInterface answered. */
HRESULT CHostAskForDevice(IUnknown* object, IMorquilDevice** device);

/* The length of a text that C allocated. */
UINT CHostTextLength(void);

#ifdef __cplusplus
}
#endif

#endif /* C_HOST_H */
