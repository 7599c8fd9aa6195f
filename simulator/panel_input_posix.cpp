#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string>
#include <utility>

#include "simulator/panel_input.h"

namespace Morquil::Simulator {

struct PanelInput::Reader {
    asio::posix::stream_descriptor input;
    std::function<void(std::string_view)> onLine;
    // Waiting without blocking changes the terminal that is shared with the shell: it gets its own flags back.
    const int flags = fcntl(STDIN_FILENO, F_GETFL);
    std::string text;

    void Wait() {
        asio::async_read_until(input, asio::dynamic_buffer(text), '\n',
                               [this](asio::error_code error, std::size_t length) {
                                   if (error) {
                                       TakeRest(error);
                                       return;
                                   }
                                   TakeLine(length);
                                   Wait();
                               });
    }

    void TakeLine(std::size_t length) {
        const std::string line = text.substr(0, length - 1);
        text.erase(0, length);
        onLine(line);
    }

    void TakeRest(asio::error_code error) {
        if (error == asio::error::eof && !text.empty()) {
            text += '\n';
            TakeLine(text.size());
        }
    }

    /// The system cannot wait for a file, and need not: a file never blocks.
    void ReadFile() {
        std::array<char, 4096> piece{};
        for (ssize_t length = 0; (length = read(STDIN_FILENO, piece.data(), piece.size())) > 0;) {
            text.append(piece.data(), static_cast<std::size_t>(length));
        }
        for (std::size_t end = 0; (end = text.find('\n')) != std::string::npos;) {
            TakeLine(end + 1);
        }
        TakeRest(asio::error::eof);
    }
};

PanelInput::PanelInput(asio::io_context& context, std::function<void(std::string_view)> onLine)
    : reader_(new Reader{.input = asio::posix::stream_descriptor(context), .onLine = std::move(onLine), .text = {}}) {
    struct stat status {};
    if (fstat(STDIN_FILENO, &status) == 0 && S_ISREG(status.st_mode)) {
        asio::post(context, [reader = reader_.get()] { reader->ReadFile(); });
        return;
    }
    asio::error_code error;
    reader_->input.assign(STDIN_FILENO, error);
    if (!error) {
        reader_->Wait();
    }
}

PanelInput::~PanelInput() {
    if (reader_->input.is_open()) {
        reader_->input.release();
        fcntl(STDIN_FILENO, F_SETFL, reader_->flags);
    }
}

}  // namespace Morquil::Simulator
