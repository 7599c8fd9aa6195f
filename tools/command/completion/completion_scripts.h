#pragma once

#include <string_view>

namespace Morquil::Command {

/// A shell, and what it reads to complete the command line: it calls `morquilctl complete -- WORD...` for candidates,
/// one in a line, each with a tabulator and what it is good for, if that is known. The line ":files" asks for names of
/// files, which shells know better.
struct CompletionScript {
    std::string_view shell;
    std::string_view text;
};

extern const CompletionScript completionScripts[3];

}  // namespace Morquil::Command
