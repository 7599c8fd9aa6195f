// Texts from hosts, on their way to the device.
#pragma once

#include "fuzz/byte_source.h"

namespace Morquil::Fuzz {

/// Conversions between UTF-16 and UTF-8: well-formed for any input, and cut between characters.
void TryConversions(ByteSource& source);

/// The real setters of texts: they queue one block with one line of the host's text, or nothing.
void TryTextSetters(ByteSource& source);

}  // namespace Morquil::Fuzz
