#include "platform/standard_streams.h"

namespace Morquil {

/// The C library reserves these numbers for the standard streams, whether or not they are open.
bool OccupyStandardStreams() {
    return true;
}

}  // namespace Morquil
