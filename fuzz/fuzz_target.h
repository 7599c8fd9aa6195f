// What a fuzz target offers: libFuzzer and the replay program call the same function.
#pragma once

#include <cstddef>
#include <cstdint>

/// Tries one input. Ends the program when it finds that a promise is broken; keeps nothing for the next input.
/// Returns: 0.
int TestOneInput(const std::uint8_t* bytes, std::size_t size);
