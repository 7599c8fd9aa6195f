#include "core/above_standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace QRN::Core {

int AboveStandardStreams(int descriptor) {
    if (descriptor < 0 || descriptor > STDERR_FILENO) {
        return descriptor;
    }
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    close(descriptor);
    errno = error;
    return moved;
}

}  // namespace QRN::Core
