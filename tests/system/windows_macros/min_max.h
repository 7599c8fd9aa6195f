#pragma once

// As Microsoft's <windows.h> has them unless NOMINMAX is defined. MinGW's does that in C only, and its standard library
// could not be included after them.
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
