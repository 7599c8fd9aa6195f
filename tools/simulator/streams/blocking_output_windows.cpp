#include <io.h>

#include "simulator/streams/blocking_output.h"

namespace Morquil::Simulator {

void IgnoreBrokenPipes() {
    // On Windows a broken pipe does not end a program.
}

bool WriteCompletely(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const int written = _write(descriptor, text.data(), static_cast<unsigned>(text.size()));
        if (written <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace Morquil::Simulator
