// The C++ layer before <windows.h>.
#include <morquil.hpp>

#include <windows.h>
