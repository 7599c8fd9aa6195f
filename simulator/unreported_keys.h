// Keys that devices take from hosts and never report: the readers that hosts and this device share do not know them.
#pragma once

#include <string>
#include <string_view>
#include <tuple>

#include "protocol/block.h"

namespace Morquil::Simulator {

template <class Row>
inline constexpr bool isUnreported = false;
template <class Row>
inline constexpr bool isUnreported<WriteOnly<Row>> = true;

/// The key of this block that the key from a line names; empty when it is none of the unreported ones.
std::string_view UnreportedKey(std::string_view block, std::string_view key);

/// `text`, a block with this header, without the lines of unreported keys.
std::string WithoutUnreportedKeys(std::string_view block, std::string_view text);

/// Reads the value of an unreported key. Returns whether it is one that the key can have.
template <class Description>
bool ReadUnreported(TextProtocolParser& errors, std::string_view key, std::string_view value,
                    ChangeSetOf<Description>& set) {
    Selections selections;
    const LineContext line{errors, selections, value};
    bool read = false;
    const auto tryRow = [&]<class Row>(const Row& row) {
        if constexpr (isUnreported<Row>) {
            if (key == row.row.name) {
                row.row.template Read<0>(line, set, 0);
                read = (set.*row.row.member).IsPresent();
            }
        }
    };
    std::apply([&](const auto&... row) { (tryRow(row), ...); }, Description::block.rows);
    return read;
}

}  // namespace Morquil::Simulator
