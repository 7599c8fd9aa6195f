// The C++ layer where min and max are macros.
#include "tests/system/windows_macros/standard_library.h"

#include "tests/system/windows_macros/min_max.h"

#include <morquil.hpp>
