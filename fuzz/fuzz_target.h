// The interface of a fuzz target: libFuzzer and the replay program call the same function.
#pragma once

#include <cstddef>
#include <cstdint>

/// Tries one input. Ends the program when a promise is broken; keeps no state for the next input.
/// Returns: 0.
int TestOneInput(const std::uint8_t* bytes, std::size_t size);
