#pragma once

#include <string>

#include "bench/plain_blocks.h"

namespace Morquil::Bench {

/// Reads a whole text with getline and string streams; every key and value is a new string.
void NaiveParse(const std::string& text, PlainBlocks& blocks);

}  // namespace Morquil::Bench
