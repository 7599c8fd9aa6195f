// The chain of hashes that shows whether audit rows have been changed.
#pragma once

#include <array>
#include <string>

#include "gateway/store/records.h"

namespace Morquil::Gateway {

/// BLAKE2b, 256 bits. All zero before the first row.
using Hash = std::array<unsigned char, 32>;

/// The hash of a row: of its id, all its fields, and the hash of the row before.
Hash ChainHash(const Attempt& attempt, const Hash& previous);

std::string ToHex(const Hash& hash);

}  // namespace Morquil::Gateway
