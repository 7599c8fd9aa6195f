// What the scripts of all shells are made of.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "command/description.h"
#include "command/options.h"

namespace Morquil::Command {

/// `text` in single quotes, as every shell here understands it.
std::string Quoted(std::string_view text);

/// The words that a described property takes; none for numbers and texts.
std::vector<std::string> WordsOf(const Json& property);

/// The options whose value is the next word, each behind `separator`.
std::string JoinedValueOptions(const Grammar& grammar, const std::string& separator);

}  // namespace Morquil::Command
