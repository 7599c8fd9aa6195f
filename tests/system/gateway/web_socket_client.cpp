#include "tests/system/gateway/web_socket_client.h"

#include <gtest/gtest.h>

namespace Morquil::Testing {

WebSocketClient::WebSocketClient(std::uint16_t port, const std::string& path, const std::string& headers)
    : client_(port) {
    client_.Request("GET", path, {},
                    "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                    "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n" +
                        headers);
    status_ = client_.Receive().status;
}

// Masked with zeros, which changes nothing.
void WebSocketClient::Send(const std::string& message) {
    ASSERT_LT(message.size(), 65'536U);
    std::string frame = "\x81";
    if (message.size() < 126) {
        frame += static_cast<char>(0x80 | message.size());
    } else {
        frame += static_cast<char>(0x80 | 126);
        frame += static_cast<char>(message.size() >> 8);
        frame += static_cast<char>(message.size() & 0xff);
    }
    client_.SendRaw(frame + std::string(4, '\0') + message);
}

Json WebSocketClient::Next() {
    const auto byte = [](char c) { return static_cast<std::size_t>(static_cast<unsigned char>(c)); };
    for (std::string head = client_.Bytes(2); head.size() == 2; head = client_.Bytes(2)) {
        std::size_t size = byte(head[1]) & 0x7f;
        const std::string longer = client_.Bytes(size == 126 ? 2 : size == 127 ? 8 : 0);
        size = longer.empty() ? size : 0;
        for (const char c : longer) {
            size = (size << 8) | byte(c);
        }
        const std::string message = client_.Bytes(size);
        if ((byte(head[0]) & 0x0f) == 1) {
            return Json::parse(message, nullptr, false);
        }
        if ((byte(head[0]) & 0x0f) == 8) {
            return nullptr;
        }
    }
    return nullptr;
}

}  // namespace Morquil::Testing
