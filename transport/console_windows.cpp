#include <io.h>

#include <cstdio>

#include "transport/console.h"

namespace Morquil {

// On a character device a stream may have no buffer and write each character by itself, which takes longer than all
// else that a connection does.
void Print(std::string_view text) {
    const int output = _fileno(stdout);
    if (_isatty(output) != 0) {
        std::fflush(stdout);
        _write(output, text.data(), static_cast<unsigned>(text.size()));
    } else {
        std::fwrite(text.data(), 1, text.size(), stdout);
    }
}

}  // namespace Morquil
