#include "gateway/web/connection.h"

#include <exception>
#include <utility>

#include "gateway/text/log.h"
#include "gateway/web/event_stream.h"
#include "gateway/web/http_writer.h"
#include "gateway/web/web_socket.h"

namespace Morquil::Gateway {
namespace {

namespace asio = boost::asio;
using boost::system::error_code;

constexpr auto handshakeLimit = std::chrono::seconds(10);
constexpr auto writeLimit = std::chrono::seconds(30);
// A request with a deadline of its own is answered by then.
constexpr auto serveLimit = std::chrono::seconds(90);

}  // namespace

Connection::Connection(WebContext& web, std::shared_ptr<Socket> socket, std::function<void()> onClosed)
    : web_(web),
      socket_(std::move(socket)),
      onClosed_(std::move(onClosed)),
      alarm_(web.context),
      reader_({web.config.headerBytes, web.config.bodyBytes}) {}

Connection::~Connection() {
    Close();
}

void Connection::Start() {
    LimitTo(handshakeLimit);
    socket_->Start([self = shared_from_this()](error_code error) {
        if (error) {
            self->Close();
            return;
        }
        self->LimitTo(self->web_.config.requestTime);
        self->Read();
    });
}

void Connection::Drain() {
    isDraining_ = true;
    if (!isServing_) {
        Close();
    }
}

void Connection::Close() {
    if (std::exchange(isClosed_, true)) {
        return;
    }
    alarm_.Cancel();
    if (socket_ != nullptr) {
        socket_->Close();
    }
    std::exchange(onClosed_, nullptr)();
}

void Connection::LimitTo(std::chrono::steady_clock::duration limit) {
    alarm_.In(limit, [weak = weak_from_this()] {
        if (const std::shared_ptr<Connection> self = weak.lock()) {
            if (self->reader_.HasBegun() && !self->isServing_) {
                self->Refuse(408, "too-slow", "the request did not arrive in time");
            } else {
                self->Close();
            }
        }
    });
}

void Connection::Read() {
    socket_->ReadSome(asio::buffer(piece_),
                      [self = shared_from_this()](error_code error, std::size_t size) { self->OnRead(error, size); });
}

void Connection::OnRead(error_code error, std::size_t size) {
    if (error || isClosed_ || isServing_) {
        Close();
        return;
    }
    if (!reader_.HasBegun()) {
        LimitTo(web_.config.requestTime);
    }
    received_.append(piece_.data(), size);
    Parse();
}

void Connection::Parse() {
    std::string_view rest = received_;
    const HttpReader::State state = reader_.Feed(rest);
    received_.erase(0, received_.size() - rest.size());
    if (state == HttpReader::State::Malformed) {
        const int status = reader_.Status();
        Refuse(status, status == 400 ? "malformed-request" : "too-large",
               status == 413   ? "the body is larger than this gateway accepts"
               : status == 431 ? "the headers are larger than this gateway accepts"
                               : "this is not a request of HTTP/1.1");
        return;
    }
    if (state == HttpReader::State::Complete) {
        Serve(reader_.Take());
        return;
    }
    if (reader_.WantsContinue()) {
        static constexpr std::string_view interim = "HTTP/1.1 100 Continue\r\n\r\n";
        socket_->WriteAll({asio::buffer(interim.data(), interim.size())},
                          [self = shared_from_this()](error_code error, std::size_t) {
                              if (error) {
                                  self->Close();
                              }
                          });
    }
    Read();
}

void Connection::Refuse(int status, std::string_view kind, std::string_view detail) {
    keepsAlive_ = false;
    isServing_ = true;
    Request request;
    request.id = NewRequestId();
    Answer(request, ProblemResponse(request, status, kind, std::string(detail)));
}

void Connection::Serve(Request request) {
    isServing_ = true;
    keepsAlive_ = reader_.KeepsAlive() && !isDraining_;
    LimitTo(serveLimit);
    request.id = NewRequestId();
    request.address = socket_->Peer();
    request.isSecure = socket_->IsSecure();
    const bool isHead = request.method == "HEAD";
    request.method = isHead ? "GET" : request.method;
    if (!ReadTarget(request)) {
        Refuse(400, "malformed-request", "the path or the query is malformed");
        return;
    }
    if (ServeStream(request)) {
        return;
    }
    // The endpoint gets the request; the response needs its id.
    Request asked;
    asked.id = request.id;
    asked.method = isHead ? "HEAD" : request.method;
    if (!request.path.starts_with("/api/")) {
        if (auto refusal = web_.api.Admit(request)) {
            Answer(asked, *std::move(refusal));
            return;
        }
        auto file = web_.files(request);
        Answer(asked, file ? *std::move(file)
                           : ProblemResponse(asked, 404, "unknown-path", "there is nothing at " + request.path));
        return;
    }
    try {
        web_.api.Handle(std::move(request), [self = shared_from_this(), asked](Response response) {
            self->Answer(asked, std::move(response));
        });
    } catch (const std::exception& error) {
        Log(LogLevel::Error, "a request failed", {{"request", asked.id}, {"reason", error.what()}});
        Answer(asked,
               ProblemResponse(asked, 500, "internal-error", "the gateway could not serve this; its log says why"));
    }
}

void Connection::Answer(const Request& request, Response response) {
    if (isClosed_) {
        return;
    }
    LimitTo(writeLimit);
    keepsAlive_ = keepsAlive_ && !response.source && !isDraining_;
    head_ = HeadOf(request, response, keepsAlive_);
    response_ = std::move(response);
    if (request.method == "HEAD" || response_.status == 304) {
        response_.body.clear();
        response_.permanent = {};
        response_.source = nullptr;
    }
    socket_->WriteAll({asio::buffer(head_), asio::buffer(response_.body),
                       asio::buffer(response_.permanent.data(), response_.permanent.size())},
                      [self = shared_from_this()](error_code error, std::size_t) { self->OnWritten(error); });
}

void Connection::OnWritten(error_code error) {
    if (error || isClosed_) {
        Close();
        return;
    }
    if (response_.source) {
        WriteFromSource();
        return;
    }
    response_ = {};
    if (!keepsAlive_ || isDraining_) {
        // What the client is still sending is dropped, so that it can read the answer first.
        socket_->Finish();
        LimitTo(std::chrono::seconds(1));
        Read();
        return;
    }
    isServing_ = false;
    LimitTo(web_.config.idleTime);
    if (received_.empty()) {
        Read();
    } else {
        LimitTo(web_.config.requestTime);
        Parse();
    }
}

void Connection::WriteFromSource() {
    LimitTo(serveLimit);
    response_.source([self = shared_from_this()](std::string piece) {
        if (self->isClosed_) {
            return;
        }
        if (piece.empty()) {
            self->response_ = {};
            self->keepsAlive_ = false;
            self->OnWritten({});
            return;
        }
        self->response_.body = std::move(piece);
        self->LimitTo(writeLimit);
        self->socket_->WriteAll({asio::buffer(self->response_.body)},
                                [self](error_code error, std::size_t) { self->OnWritten(error); });
    });
}

bool Connection::ServeStream(Request& request) {
    const bool isEvents = request.path == "/api/v1/events";
    const bool isSocket = request.path == "/api/v1/stream";
    if ((!isEvents && !isSocket) || request.method != "GET") {
        return false;
    }
    Response refusal;
    if (auto problem = web_.api.Admit(request)) {
        refusal = *std::move(problem);
    } else if (isSocket && !IsUpgrade(request)) {
        refusal =
            ProblemResponse(request, 400, "upgrade-required", "this is a WebSocket; use /api/v1/events otherwise");
    } else if (const auto view = web_.api.ReadView(request, refusal)) {
        Hand(request, *view);
        return true;
    }
    Answer(request, std::move(refusal));
    return true;
}

void Connection::Hand(const Request& request, const View& view) {
    alarm_.Cancel();
    isClosed_ = true;
    const std::shared_ptr<Socket> socket = std::exchange(socket_, nullptr);
    if (request.path == "/api/v1/events") {
        ServeEvents(web_, socket, request, view, std::exchange(onClosed_, nullptr));
    } else {
        ServeWebSocket(web_, socket, request, view, std::exchange(onClosed_, nullptr));
    }
}

}  // namespace Morquil::Gateway
