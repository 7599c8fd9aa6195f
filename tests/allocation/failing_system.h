// What the library asks of the system itself: where the linker can put a test in between, that fails like memory.
#pragma once

#include <cstddef>

namespace Morquil::Test {

/// Memory that is not let fail.
void* PlainMemory(std::size_t size);

/// How many texts (BSTR) nobody has freed.
long LiveTexts();

}  // namespace Morquil::Test
