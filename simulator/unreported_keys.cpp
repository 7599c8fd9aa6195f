#include "simulator/unreported_keys.h"

#include "protocol/block_table.h"
#include "simulator/text_lines.h"

namespace Morquil::Simulator {

std::string_view UnreportedKey(std::string_view block, std::string_view key) {
    std::string_view found;
    const auto tryRow = [&]<class Row>(const Row& row) {
        if constexpr (isUnreported<Row>) {
            if (EqualsIgnoringCase(key, row.row.name)) {
                found = row.row.name;
            }
        }
    };
    const auto tryBlock = [&]<class Entry>(Entry) {
        if (EqualsIgnoringCase(block, Entry::Description::block.header.name)) {
            std::apply([&](const auto&... row) { (tryRow(row), ...); }, Entry::Description::block.rows);
        }
    };
    std::apply([&](auto... entry) { (tryBlock(entry), ...); }, BlockTable());
    return found;
}

std::string WithoutUnreportedKeys(std::string_view block, std::string_view text) {
    std::string kept;
    ForEachLine(text, [&](std::string_view line) {
        const std::string_view key = line.substr(0, line.find(':'));
        if (UnreportedKey(block, key).empty()) {
            kept.append(line).append("\n");
        }
    });
    return kept;
}

}  // namespace Morquil::Simulator
