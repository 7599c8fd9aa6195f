#include <fcntl.h>
#include <unistd.h>

#include "platform/standard_streams.h"

namespace Morquil {

bool OccupyStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        const bool isOpen = fcntl(stream, F_GETFD) >= 0;
        // This number is the lowest free one, so `open` returns it. Opened in the wrong direction, so that using it
        // still fails.
        if (!isOpen && open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) != stream) {
            return false;
        }
    }
    return true;
}

}  // namespace Morquil
