// The library's calls to the system: where the linker can insert a test, they fail as memory does.
#pragma once

#include <cstddef>

namespace Morquil::Testing {

/// Memory that does not fail.
void* PlainMemory(std::size_t size);

/// How many texts (BSTR) have not been freed.
long LiveTexts();

}  // namespace Morquil::Testing
