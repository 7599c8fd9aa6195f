#include "simulator/host_lines.h"

#include "simulator/wire_text.h"

namespace Morquil::Simulator {

void HostLines::Feed(std::string_view bytes) {
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        unfinished_.append(bytes.substr(0, end));
        PassOn(unfinished_);
        unfinished_.clear();
        bytes.remove_prefix(end + 1);
    }
    unfinished_.append(bytes);
    if (unfinished_.size() > longestLine) {
        // No line of ours: the parser reports it, and what a host sends without end is not kept.
        parser_.Feed(unfinished_.data(), unfinished_.size());
        unfinished_.clear();
    }
}

void HostLines::PassOn(std::string_view line) {
    const std::string_view content = line.substr(0, line.find_last_not_of('\r') + 1);
    const std::string text = header_.empty() ? std::string(line) + "\n" : LineFromHost(header_, line);
    if (content.empty()) {
        header_.clear();
    } else if (header_.empty()) {
        header_ = content;
    }
    parser_.Feed(text.data(), text.size());
}

}  // namespace Morquil::Simulator
