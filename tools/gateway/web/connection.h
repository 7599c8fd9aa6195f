// One client's connection.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "gateway/fleet/alarm.h"
#include "gateway/web/http_reader.h"
#include "gateway/web/socket.h"
#include "gateway/web/web_context.h"

namespace Morquil::Gateway {

/// Serves requests one after the other; every wait has a limit. Pending operations keep it alive; once closed it does
/// nothing more.
/// Threads: the context's.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(WebContext& web, std::shared_ptr<Socket> socket, std::function<void()> onClosed);
    ~Connection();

    void Start();
    /// Ends it once the response that is in progress has been sent.
    void Drain();
    void Close();

private:
    void Read();
    void OnRead(boost::system::error_code error, std::size_t size);
    void Parse();
    void Serve(Request request);
    void Refuse(int status, std::string_view kind, std::string_view detail);
    void Answer(const Request& request, Response response);
    void Write(const Request& request);
    void OnWritten(boost::system::error_code error);
    void WriteFromSource();
    bool ServeStream(Request& request);
    void Hand(const Request& request, const View& view);
    void LimitTo(std::chrono::steady_clock::duration limit);

    WebContext& web_;
    std::shared_ptr<Socket> socket_;
    std::function<void()> onClosed_;
    Alarm alarm_;
    HttpReader reader_;
    std::array<char, 2'048> piece_ = {};
    std::string received_;  // not parsed yet
    std::string head_;
    Response response_;
    bool keepsAlive_ = true;
    bool isServing_ = false;
    bool isDraining_ = false;
    bool isClosed_ = false;
};

}  // namespace Morquil::Gateway
