// Gives every identifier that MorquilAPI.h declares its one definition.
#include <initguid.h>

#include "MorquilAPI.h"
