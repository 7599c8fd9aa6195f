#pragma once

namespace QRN::Core {

/// Moves a new descriptor away from the numbers of standard input, output and error, which it gets in a process that
/// was started without them: what the host prints would go into it. Closes the one it replaces.
/// Returns: the descriptor to use; a negative one as it is, and one with `errno` set where no other could be had.
int AboveStandardStreams(int descriptor);

}  // namespace QRN::Core
