#pragma once

#include <string_view>

namespace Morquil::Command {

/// A shell and its completion script. The script calls `morquilctl complete -- WORD...`, which prints one candidate on
/// each line, followed by a tab and its description if there is one. The line ":files" asks the shell to complete file
/// names itself.
struct CompletionScript {
    std::string_view shell;
    std::string_view text;
};

extern const CompletionScript completionScripts[3];

}  // namespace Morquil::Command
