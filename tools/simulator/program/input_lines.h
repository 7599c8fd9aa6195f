#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace Morquil::Simulator {

/// Splits bytes, as they come, into lines without their line feeds. Of a line that is longer than a script accepts only
/// so much is kept that whoever reads it sees that it is too long.
class InputLines {
public:
    explicit InputLines(std::function<void(std::string)> onLine) : onLine_(std::move(onLine)) {}

    void Feed(std::string_view bytes);
    /// Bytes after the last line feed are a line, too.
    void End();

private:
    void Keep(std::string_view part);

    std::function<void(std::string)> onLine_;
    std::string line_;
};

}  // namespace Morquil::Simulator
