#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace Morquil::Simulator {

/// Splits bytes, as they arrive, into lines without their line feeds. If a line is longer than a script accepts, only
/// enough of it is kept to show that it is too long.
class InputLines {
public:
    explicit InputLines(std::function<void(std::string)> onLine) : onLine_(std::move(onLine)) {}

    void Feed(std::string_view bytes);
    /// Ends the input. Bytes after the last line feed are also a line.
    void End();

private:
    void Keep(std::string_view part);

    std::function<void(std::string)> onLine_;
    std::string line_;
};

}  // namespace Morquil::Simulator
