#pragma once

#include <cstddef>

namespace Morquil::Testing {

// What the check for leaks needs to know of its program: each of the *_setup.cpp suits some programs.

/// Makes what systems and libraries make once, at the first use, and keep.
void WarmUp();

/// How many handles tests leave to the process because what they test does so.
std::size_t HandlesLeftOnPurpose();

/// How many references to objects of the library are still held, of those that can be asked for.
unsigned long LiveReferences();

}  // namespace Morquil::Testing
