#include "command/completion_data.h"

namespace Morquil::Command {

std::string Quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

std::vector<std::string> WordsOf(const Json& property) {
    return property.value("words", std::vector<std::string>());
}

std::string JoinedValueOptions(const Grammar& grammar, const std::string& separator) {
    std::string joined;
    for (const Offered& option : grammar.options) {
        if (option.takesValue) {
            joined += (option.letter.empty() ? "" : separator + "-" + option.letter) + separator + option.name;
        }
    }
    return joined;
}

}  // namespace Morquil::Command
