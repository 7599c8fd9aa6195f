#pragma once

namespace Morquil {

/// Opens the null device in place of each standard stream that the program was started without, so that no socket or
/// file gets its number. Reading or writing such a stream still fails. To be called before anything is opened.
/// Returns: false when there is no null device.
bool OccupyStandardStreams();

}  // namespace Morquil
