#include "command/output/traced_lines.h"

#include "command/output/escape.h"

namespace Morquil::Command {
namespace {

// Where an endless line is split.
constexpr std::size_t longestLine = 4096;

std::string Marked(std::string_view line) {
    return "| " + Escaped(line) + "\n";
}

}  // namespace

std::string TracedLines::Add(std::string_view piece) {
    unfinished_ += piece;
    std::string lines;
    for (std::size_t end = unfinished_.find('\n'); end != std::string::npos; end = unfinished_.find('\n')) {
        lines += Marked(std::string_view(unfinished_).substr(0, end));
        unfinished_.erase(0, end + 1);
    }
    return unfinished_.size() > longestLine ? lines + Rest() : lines;
}

std::string TracedLines::Rest() {
    std::string rest = unfinished_.empty() ? std::string() : Marked(unfinished_);
    unfinished_.clear();
    return rest;
}

}  // namespace Morquil::Command
