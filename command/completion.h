#pragma once

#include <string>
#include <string_view>

namespace Morquil::Command {

/// A script that completes the command line in `shell`: commands, options, the names of properties and the words that
/// they take. Throws: UsageFailure for a shell that is not known.
std::string CompletionScript(std::string_view shell);

}  // namespace Morquil::Command
