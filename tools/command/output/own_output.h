#pragma once

#include <memory>
#include <string_view>

namespace Morquil::Command {

/// What has become of a piece of output.
enum class Written { All, NoReader, Failed };

/// Standard output and the library: it prints what it has to say, and what it receives, on the process's standard
/// output. This one is given to the program alone, and the library's words go nowhere or, escaped, to standard error.
class OwnOutput {
public:
    OwnOutput();
    ~OwnOutput();
    OwnOutput(const OwnOutput&) = delete;
    OwnOutput& operator=(const OwnOutput&) = delete;

    /// From here on the library's words are shown.
    void Trace();

    /// Writes to standard output, as it was.
    Written Write(std::string_view text);
    /// Whether what is written may still be read. Windows says so only after a write has failed.
    bool HasReader() const;
    /// Whether a terminal is on the other side that understands colours.
    bool IsTerminal() const;

    /// Shows the rest of the library's words.
    void Finish();

private:
    class System;
    std::unique_ptr<System> system_;
};

}  // namespace Morquil::Command
