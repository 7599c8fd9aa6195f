// Texts that hosts hand over, on their way to the wire.
#pragma once

#include "fuzz/byte_source.h"

namespace Morquil::Fuzz {

/// Conversions between the interfaces' text and the wire's: well formed whatever goes in, and cut between characters.
void TryConversions(ByteSource& source);

/// The real setters of texts: what they queue is one block with one line of the host's text, or nothing at all.
void TryTextSetters(ByteSource& source);

}  // namespace Morquil::Fuzz
