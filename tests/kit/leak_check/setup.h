#pragma once

#include <cstddef>

namespace Morquil::Testing {

// What the leak check needs to know about its program: each *_setup.cpp suits some programs.

/// Creates what systems and libraries create once, at the first use, and keep.
void WarmUp();

/// How many handles tests leave open because the tested code does.
std::size_t IntentionallyKeptHandles();

/// How many references to objects of the library are still held, as far as that can be queried.
unsigned long LiveReferences();

}  // namespace Morquil::Testing
