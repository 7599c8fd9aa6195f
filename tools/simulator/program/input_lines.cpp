#include "simulator/program/input_lines.h"

#include <utility>

#include "simulator/program/script.h"

namespace Morquil::Simulator {

void InputLines::Keep(std::string_view part) {
    line_ += part.substr(0, longestScriptLine + 1 - line_.size());
}

void InputLines::Feed(std::string_view bytes) {
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        Keep(bytes.substr(0, end));
        onLine_(std::exchange(line_, {}));
        bytes.remove_prefix(end + 1);
    }
    Keep(bytes);
}

void InputLines::End() {
    if (!line_.empty()) {
        onLine_(std::exchange(line_, {}));
    }
}

}  // namespace Morquil::Simulator
