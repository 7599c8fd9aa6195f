#include "tests/system/gateway/http_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace Morquil::Testing {
namespace {

constexpr auto patience = std::chrono::seconds(20);

std::unique_ptr<LoopbackPeer> ConnectTo(std::uint16_t port) {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in name = {};
    name.sin_family = AF_INET;
    name.sin_port = htons(port);
    name.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0) {
        ::close(socket);
        return nullptr;
    }
    return std::make_unique<LoopbackPeer>(socket);
}

std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

}  // namespace

HttpClient::HttpClient(std::uint16_t port) : peer_(ConnectTo(port)) {}

void HttpClient::Request(const std::string& method, const std::string& path, const std::string& body,
                         const std::string& headers) {
    std::string text = method + " " + path + " HTTP/1.1\r\n";
    if (headers.find("Host:") == std::string::npos) {
        text += "Host: 127.0.0.1\r\n";
    }
    if (!body.empty()) {
        text += headers.find("Content-Type:") == std::string::npos ? "Content-Type: application/json\r\n" : "";
        text += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    }
    SendRaw(text + headers + "\r\n" + body);
}

HttpAnswer HttpClient::Receive() {
    HttpAnswer answer;
    const std::optional<std::string> status = Line();
    if (!status || !status->starts_with("HTTP/1.1 ")) {
        return answer;
    }
    while (const std::optional<std::string> line = Line()) {
        if (line->empty()) {
            answer.status = std::atoi(status->c_str() + 9);
            break;
        }
        const std::size_t colon = std::min(line->find(": "), line->size() - 1);
        answer.headers[LowerCase(line->substr(0, colon))] = line->substr(std::min(colon + 2, line->size()));
    }
    const auto length = answer.headers.find("content-length");
    if (length != answer.headers.end()) {
        answer.body = Bytes(static_cast<std::size_t>(std::atoll(length->second.c_str())));
    }
    return answer;
}

HttpAnswer HttpClient::Ask(const std::string& method, const std::string& path, const std::string& body,
                           const std::string& headers) {
    Request(method, path, body, headers);
    return Receive();
}

bool HttpClient::Fill() {
    if (peer_ == nullptr) {
        return false;
    }
    const std::optional<std::string> bytes = peer_->ReceiveSome();
    if (bytes) {
        received_ += *bytes;
    }
    return bytes.has_value();
}

std::optional<std::string> HttpClient::Line() {
    std::size_t end = 0;
    while ((end = received_.find('\n')) == std::string::npos) {
        if (!Fill()) {
            return std::nullopt;
        }
    }
    std::string line = received_.substr(0, end);
    received_.erase(0, end + 1);
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return line;
}

std::string HttpClient::Bytes(std::size_t count) {
    while (received_.size() < count && Fill()) {
    }
    std::string bytes = received_.substr(0, count);
    received_.erase(0, count);
    return bytes;
}

EventClient::EventClient(std::uint16_t port, const std::string& query, const std::string& headers) : client_(port) {
    client_.Request("GET", "/api/v1/events" + query, {}, headers);
    status_ = client_.Receive().status;
}

std::optional<EventClient::Event> EventClient::Next() {
    Event event;
    const auto end = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < end) {
        const std::optional<std::string> line = client_.Line();
        if (!line) {
            return std::nullopt;
        }
        if (line->empty() && !event.name.empty()) {
            return event;
        }
        if (line->starts_with("event: ")) {
            event.name = line->substr(7);
        } else if (line->starts_with("id: ")) {
            event.id = line->substr(4);
        } else if (line->starts_with("data: ")) {
            event.data = Json::parse(line->substr(6), nullptr, false);
        }
    }
    return std::nullopt;
}

}  // namespace Morquil::Testing
