#pragma once

#include <optional>
#include <string_view>

namespace Morquil::Command {

/// The result of writing a piece of output.
enum class Written { All, NoReader, Failed };

/// The program's standard output.
class StandardOutput {
public:
    StandardOutput();

    Written Write(std::string_view text);
    /// Whether it still has a reader. Windows reports this only after a write has failed.
    bool HasReader() const;
    /// Whether it is a terminal that understands colours.
    bool IsTerminal() const;
    /// How many characters fit into a line of the terminal; nothing if that is unknown.
    std::optional<std::size_t> Width() const;
};

}  // namespace Morquil::Command
