#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Morquil {

/// The lines of a sent block that the device has not reported yet. Lines are compared as text, in the form in which the
/// library writes a block, so two numbers are the same when they look the same on the wire.
class AwaitedLines {
public:
    /// What a report says about the awaited lines.
    enum class Comparison {
        NoneReported,  ///< it contains none of their keys
        Same,          ///< it repeats every awaited line whose key it contains
        Different,     ///< it contains at least one of their keys with another value
    };

    /// Whether the device reports the value of a key that it has accepted. `slot` says which block the key belongs to.
    using IsReported = bool (*)(std::size_t slot, std::string_view key);

    AwaitedLines() = default;
    /// `block` is the text of a whole block: header, lines, empty line.
    AwaitedLines(std::string_view block, std::size_t slot, IsReported isReported);

    bool IsEmpty() const { return lines_.empty(); }
    /// `report` is the text of a whole block with the same header.
    Comparison Compare(std::string_view report) const;
    /// Removes the lines whose keys `report` contains, whatever their values.
    void RemoveReported(std::string_view report);

private:
    std::string lines_;
};

}  // namespace Morquil
