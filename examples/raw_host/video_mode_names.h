#pragma once

#include "MorquilAPI.h"

/// What people call a video mode.
const char* NameOf(_MorquilAPIVideoMode mode);
