// Defines every identifier that the interface headers declare.
#include <initguid.h>

#include "MorquilAPI.h"
#include "MorquilDelivery.h"
