// libmpdclient: the lines unchanged, "OK" at the end of a block. It splits lines in place, and its caller finds their
// ends, so the text is copied every time, as if it had just been received.
#include <mpd/parser.h>

#include <cstring>
#include <memory>

#include "bench/parser_contest.h"

namespace Morquil::Bench {

namespace {

std::string ResponsesOf(const std::vector<TextBlock>& blocks) {
    std::string text;
    for (const TextBlock& block : blocks) {
        text += "block: " + block.header + '\n';
        for (const TextLine& line : block.lines) {
            text += line.key + ": " + line.value + '\n';
        }
        text += "OK\n";
    }
    return text;
}

class Reader {
public:
    explicit Reader(std::string text) : text_(std::move(text)), buffer_(text_) {}

    /// Returns the number of complete responses.
    std::size_t Read() {
        std::memcpy(buffer_.data(), text_.data(), text_.size());
        std::size_t responses = 0;
        char* line = buffer_.data();
        char* const end = line + buffer_.size();
        while (line != end) {
            auto* const lineFeed = static_cast<char*>(std::memchr(line, '\n', static_cast<std::size_t>(end - line)));
            *lineFeed = '\0';
            const mpd_parser_result result = mpd_parser_feed(parser_.get(), line);
            if (result == MPD_PARSER_PAIR) {
                Use(mpd_parser_get_name(parser_.get()));
                Use(mpd_parser_get_value(parser_.get()));
            } else if (result == MPD_PARSER_SUCCESS) {
                ++responses;
            }
            line = lineFeed + 1;
        }
        return responses;
    }

private:
    std::string text_;
    std::string buffer_;
    std::unique_ptr<mpd_parser, void (*)(mpd_parser*)> parser_{mpd_parser_new(), &mpd_parser_free};
};

}  // namespace

Contestant MpdClientReading(const std::string& name, const std::vector<TextBlock>& blocks) {
    const auto reader = std::make_shared<Reader>(ResponsesOf(blocks));
    RequireEqual(std::to_string(reader->Read()), std::to_string(blocks.size()), "the blocks and libmpdclient");
    return {name, [reader] { Use(reader->Read()); }};
}

}  // namespace Morquil::Bench
