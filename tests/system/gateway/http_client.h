// A client that sends exactly what a test says.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "tests/kit/loopback_peer.h"

namespace Morquil::Testing {

using Json = nlohmann::ordered_json;

struct HttpAnswer {
    int status = 0;                                   // 0: there was no answer
    std::map<std::string, std::string> headers = {};  // names in lower case
    std::string body = {};

    Json AsJson() const { return Json::parse(body, nullptr, false); }
};

/// One connection. Every wait ends after some seconds.
class HttpClient {
public:
    explicit HttpClient(std::uint16_t port);

    bool SendRaw(std::string_view bytes) { return peer_ != nullptr && peer_->Send(bytes); }
    /// Sends a request with a Host and, if there is a body, its type and length. `headers`: further lines, each with
    /// its end.
    void Request(const std::string& method, const std::string& path, const std::string& body = {},
                 const std::string& headers = {});
    HttpAnswer Receive();
    HttpAnswer Ask(const std::string& method, const std::string& path, const std::string& body = {},
                   const std::string& headers = {});
    /// Whether the server has closed the connection.
    bool SeesClose() { return peer_->SeesClose(); }

    /// The next line without its end; nothing at the end of the connection or of the patience.
    std::optional<std::string> Line();
    /// Bytes as they come, what was read ahead first.
    std::string Bytes(std::size_t count);

private:
    bool Fill();

    std::unique_ptr<LoopbackPeer> peer_;
    std::string received_;
};

/// A stream of server-sent events.
class EventClient {
public:
    struct Event {
        std::string name;
        std::string id;
        Json data;
    };

    /// `headers`: further lines of the request.
    EventClient(std::uint16_t port, const std::string& query = {}, const std::string& headers = {});

    int Status() const { return status_; }
    /// Nothing when the stream has ended.
    std::optional<Event> Next();
    /// The next event for which `condition` holds; nothing if the stream ends before.
    template <class Condition>
    std::optional<Event> Await(Condition condition) {
        while (std::optional<Event> event = Next()) {
            if (condition(*event)) {
                return event;
            }
        }
        return std::nullopt;
    }
    std::optional<Event> AwaitNamed(std::string_view name) {
        return Await([name](const Event& event) { return event.name == name; });
    }

    /// The next event that says that a link is in this state.
    std::optional<Event> AwaitLink(std::string_view state) {
        return Await([state](const Event& event) {
            return event.data.contains("link") && event.data["link"]["state"] == state;
        });
    }

private:
    HttpClient client_;
    int status_ = 0;
};

}  // namespace Morquil::Testing
