#include <windows.h>
// windows.h comes first.
#include <io.h>

#include <cstdio>

#include "transport/standard_output.h"
#include "transport/writer_thread.h"

namespace Morquil {
namespace {

// Null when there is none.
HANDLE StandardOutput() {
    const int descriptor = _fileno(stdout);
    return descriptor < 0 ? nullptr : reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
}

// Writes through the C library's text mode, after the text that the host's stream has buffered.
std::size_t WriteText(std::string_view text) {
    std::fflush(stdout);
    const int written = _write(_fileno(stdout), text.data(), static_cast<unsigned>(text.size()));
    return written > 0 ? static_cast<std::size_t>(written) : 0;
}

constinit WriterThread writerThread(&WriteText);

}  // namespace

bool IsStandardOutputOpen() {
    return GetFileType(StandardOutput()) != FILE_TYPE_UNKNOWN;
}

/// The system cannot say whether a write to a pipe or a console would wait, so another thread does the writing.
std::size_t WriteAtOnce(std::string_view text) {
    switch (GetFileType(StandardOutput())) {
        case FILE_TYPE_UNKNOWN:
            return 0;
        case FILE_TYPE_DISK:
            return WriteText(text);
        default:
            return writerThread.HandOver(text);
    }
}

}  // namespace Morquil
