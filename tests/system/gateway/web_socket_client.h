#pragma once

#include <string>

#include "tests/system/gateway/http_client.h"

namespace Morquil::Testing {

/// A WebSocket with short messages, as simple as the protocol allows.
class WebSocketClient {
public:
    /// `headers`: further lines of the request.
    WebSocketClient(std::uint16_t port, const std::string& path, const std::string& headers = {});

    int Status() const { return status_; }
    void Send(const std::string& message);
    /// The next message; null when the other side has closed.
    Json Next();
    template <class Condition>
    Json Await(Condition condition) {
        for (Json message = Next(); !message.is_null(); message = Next()) {
            if (condition(message)) {
                return message;
            }
        }
        return nullptr;
    }

private:
    HttpClient client_;
    int status_ = 0;
};

}  // namespace Morquil::Testing
