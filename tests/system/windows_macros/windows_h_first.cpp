// The C++ layer after <windows.h> with all of its macros: nothing is left out by WIN32_LEAN_AND_MEAN or NOMINMAX.
#include <windows.h>

#include <morquil.hpp>
