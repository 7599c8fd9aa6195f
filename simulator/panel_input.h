#pragma once

#include <asio.hpp>
#include <functional>
#include <memory>
#include <string_view>

namespace Morquil::Simulator {

/// The lines of standard input, whatever it is: a terminal, a pipe, a file, or nothing at all.
class PanelInput {
public:
    /// Calls `onLine` with each line, without its line feed, on the thread that runs the `io_context`. The end of
    /// standard input is no event.
    PanelInput(asio::io_context& context, std::function<void(std::string_view)> onLine);
    PanelInput(const PanelInput&) = delete;
    PanelInput& operator=(const PanelInput&) = delete;
    ~PanelInput();

private:
    struct Reader;
    std::unique_ptr<Reader> reader_;
};

}  // namespace Morquil::Simulator
