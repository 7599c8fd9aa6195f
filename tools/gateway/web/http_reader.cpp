#include "gateway/web/http_reader.h"

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <utility>

namespace Morquil::Gateway {
namespace {

namespace http = boost::beast::http;

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return lower;
}

std::string_view ViewOf(boost::beast::string_view text) {
    return {text.data(), text.size()};
}

int StatusFor(const boost::system::error_code& error) {
    return error == http::error::body_limit ? 413 : error == http::error::header_limit ? 431 : 400;
}

}  // namespace

struct HttpReader::Parser {
    http::request_parser<http::string_body> parser = {};
    bool hasAsked = false;
};

HttpReader::HttpReader(HttpLimits limits) : limits_(limits) {}
HttpReader::~HttpReader() = default;

HttpReader::State HttpReader::Feed(std::string_view& bytes) {
    if (parser_ == nullptr) {
        if (bytes.empty()) {
            return State::NeedsMore;
        }
        parser_ = std::make_unique<Parser>();
        parser_->parser.eager(true);
        parser_->parser.header_limit(limits_.headerBytes);
        parser_->parser.body_limit(limits_.bodyBytes);
    }
    boost::system::error_code error;
    const std::size_t read = parser_->parser.put(boost::asio::buffer(bytes.data(), bytes.size()), error);
    bytes.remove_prefix(read);
    if (error && error != http::error::need_more) {
        status_ = StatusFor(error);
        return State::Malformed;
    }
    return parser_->parser.is_done() ? State::Complete : State::NeedsMore;
}

bool HttpReader::WantsContinue() {
    if (parser_ == nullptr || parser_->hasAsked || !parser_->parser.is_header_done()) {
        return false;
    }
    parser_->hasAsked = true;
    return LowerCase(ViewOf(parser_->parser.get()[http::field::expect])) == "100-continue";
}

Request HttpReader::Take() {
    auto message = parser_->parser.release();
    parser_ = nullptr;
    keepsAlive_ = message.keep_alive();
    Request request;
    request.method = std::string(ViewOf(message.method_string()));
    request.target = std::string(ViewOf(message.target()));
    for (const auto& field : message) {
        request.headers.emplace_back(LowerCase(ViewOf(field.name_string())), std::string(ViewOf(field.value())));
    }
    request.body = std::move(message.body());
    return request;
}

}  // namespace Morquil::Gateway
