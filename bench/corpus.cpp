#include "bench/corpus.h"

#include "simulator/block_kinds.h"
#include "simulator/simulated_device.h"
#include "simulator/text_lines.h"
#include "simulator/wire_text.h"

namespace Morquil::Bench {

namespace {

bool IsSettings(std::string_view header) {
    bool found = false;
    Simulator::ForEachBlock<Simulator::BlockKind::Settings>(
        [&]<class Entry>(Entry /*entry*/) { found |= header == Entry::Description::block.header.name; });
    return found;
}

}  // namespace

std::string DumpText() {
    return Simulator::SimulatedDevice(Simulator::DeviceIdentity()).CompleteDump();
}

std::string UpdatesText() {
    std::string text;
    for (const TextBlock& block : TakeApart(DumpText())) {
        if (IsSettings(block.header)) {
            for (const TextLine& line : block.lines) {
                text += block.header + ":\n" + line.key + ": " + line.value + "\n\n";
            }
        }
    }
    return text;
}

std::vector<TextBlock> TakeApart(std::string_view text) {
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
