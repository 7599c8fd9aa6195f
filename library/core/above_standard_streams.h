#pragma once

namespace QRN::Core {

/// Moves a new descriptor above the numbers of standard input, output and error. A process that was started without
/// those streams gets such a number for its next descriptor, and what the host prints would go into it. Closes the
/// descriptor that it replaces.
/// Returns: the descriptor to use. A negative `descriptor` is returned unchanged; -1 with `errno` set when the system
///          has no other number left.
int AboveStandardStreams(int descriptor);

}  // namespace QRN::Core
