// Defines every identifier that MorquilAPI.h declares.
#include <initguid.h>

#include "MorquilAPI.h"
