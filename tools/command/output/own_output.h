#pragma once

#include <memory>
#include <string_view>

namespace Morquil::Command {

/// The result of writing a piece of output.
enum class Written { All, NoReader, Failed };

/// Separates the program's standard output from the library's. The library prints messages and the lines that it
/// receives on the process's standard output. This class reserves standard output for the program; the library's lines
/// are discarded or, escaped, go to standard error.
class OwnOutput {
public:
    OwnOutput();
    ~OwnOutput();
    OwnOutput(const OwnOutput&) = delete;
    OwnOutput& operator=(const OwnOutput&) = delete;

    /// Shows the library's lines from here on.
    void Trace();

    /// Writes to the original standard output.
    Written Write(std::string_view text);
    /// Whether standard output still has a reader. Windows reports this only after a write has failed.
    bool HasReader() const;
    /// Whether standard output is a terminal that understands colours.
    bool IsTerminal() const;

    /// Shows the rest of the library's lines.
    void Finish();

private:
    class System;
    std::unique_ptr<System> system_;
};

}  // namespace Morquil::Command
