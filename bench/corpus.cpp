#include "bench/corpus.h"

#include "protocol/text/split_line.h"
#include "simulator/device/simulated_device.h"
#include "simulator/text/text_lines.h"

namespace Morquil::Bench {

namespace {

bool IsSettings(std::string_view header) {
    bool found = false;
    ForEachBlock<BlockRole::Settings>([&]<class Description>() { found |= header == Description::block.header.name; });
    return found;
}

}  // namespace

std::string DumpText() {
    return Simulator::SimulatedDevice(Simulator::DeviceIdentity()).CompleteDump();
}

std::string UpdatesText() {
    std::string text;
    for (const TextBlock& block : SplitBlocks(DumpText())) {
        if (IsSettings(block.header)) {
            for (const TextLine& line : block.lines) {
                text += block.header + ":\n" + line.key + ": " + line.value + "\n\n";
            }
        }
    }
    return text;
}

std::vector<TextBlock> SplitBlocks(std::string_view text) {
    std::vector<TextBlock> blocks;
    bool inside = false;
    Simulator::ForEachLine(text, [&](std::string_view line) {
        if (line.empty()) {
            inside = false;
        } else if (!inside) {
            blocks.push_back({std::string(line.substr(0, line.size() - 1)), {}});
            inside = true;
        } else {
            const KeyAndValue parts = SplitLine(line);
            blocks.back().lines.push_back({std::string(parts.key), std::string(parts.value)});
        }
    });
    return blocks;
}

}  // namespace Morquil::Bench
