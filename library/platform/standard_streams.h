#pragma once

namespace Morquil {

/// Opens the null device in place of each standard stream that the program was started without, so that no socket or
/// file gets its number. Reading from or writing to such a stream still fails. Call it before opening anything.
/// Returns: false when the null device cannot be opened.
bool OccupyStandardStreams();

}  // namespace Morquil
