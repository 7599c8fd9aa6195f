// http_parser: a request per block, a header field per line. It splits text and passes on the pieces.
#include <http_parser.h>

#include <algorithm>
#include <memory>

#include "bench/parser_contest.h"

namespace Morquil::Bench {

namespace {

/// Field names are tokens, which contain neither blanks nor slashes.
std::string Token(std::string text) {
    std::replace(text.begin(), text.end(), ' ', '-');
    std::replace(text.begin(), text.end(), '/', '-');
    return text;
}

std::string RequestsOf(const std::vector<TextBlock>& blocks) {
    std::string text;
    for (const TextBlock& block : blocks) {
        text += "GET /" + Token(block.header) + " HTTP/1.1\r\n";
        for (const TextLine& line : block.lines) {
            text += Token(line.key) + ": " + line.value + "\r\n";
        }
        text += "\r\n";
    }
    return text;
}

int CountRequest(http_parser* parser) {
    ++*static_cast<std::size_t*>(parser->data);
    return 0;
}

int TakePiece(http_parser* /*parser*/, const char* at, std::size_t length) {
    Use(at);
    Use(length);
    return 0;
}

struct Reader {
    Reader() {
        http_parser_init(&parser, HTTP_REQUEST);
        parser.data = &requests;
        http_parser_settings_init(&settings);
        settings.on_url = TakePiece;
        settings.on_header_field = TakePiece;
        settings.on_header_value = TakePiece;
        settings.on_message_complete = CountRequest;
    }
    void Read(const std::string& text) { http_parser_execute(&parser, &settings, text.data(), text.size()); }

    http_parser parser{};
    http_parser_settings settings{};
    std::size_t requests = 0;
};

}  // namespace

Contestant HttpParserReading(const std::string& name, const std::vector<TextBlock>& blocks) {
    const std::string text = RequestsOf(blocks);
    Reader check;
    check.Read(text);
    RequireEqual(std::to_string(check.requests), std::to_string(blocks.size()), "the blocks and http_parser");
    return {name, [text, reader = std::make_shared<Reader>()] { reader->Read(text); }};
}

}  // namespace Morquil::Bench
