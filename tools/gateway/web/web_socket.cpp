#include "gateway/web/web_socket.h"

#include <boost/asio/post.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket.hpp>
#include <deque>
#include <utility>

#include "gateway/fleet/alarm.h"

namespace Morquil::Gateway {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace websocket = boost::beast::websocket;
using boost::system::error_code;

constexpr std::size_t mostMessageBytes = 64 * 1'024;
// Commands of a client whose answers it has not read yet.
constexpr std::size_t mostCommands = 64;
constexpr auto endLimit = std::chrono::milliseconds(500);

/// A socket in the form that the WebSocket library reads and writes.
class SocketStream {
public:
    using executor_type = asio::any_io_executor;

    explicit SocketStream(std::shared_ptr<Socket> socket) : socket_(std::move(socket)) {}

    executor_type get_executor() { return socket_->Bottom().get_executor(); }

    template <class Buffers, class Token>
    auto async_read_some(const Buffers& buffers, Token&& token) {
        return asio::async_initiate<Token, void(error_code, std::size_t)>(
            [this](auto handler, const Buffers& to) {
                asio::mutable_buffer first;
                for (auto at = asio::buffer_sequence_begin(to);
                     at != asio::buffer_sequence_end(to) && first.size() == 0; ++at) {
                    first = *at;
                }
                socket_->ReadSome(first, Shared(std::move(handler)));
            },
            token, buffers);
    }

    template <class Buffers, class Token>
    auto async_write_some(const Buffers& buffers, Token&& token) {
        return asio::async_initiate<Token, void(error_code, std::size_t)>(
            [this](auto handler, const Buffers& from) {
                socket_->WriteAll({asio::buffer_sequence_begin(from), asio::buffer_sequence_end(from)},
                                  Shared(std::move(handler)));
            },
            token, buffers);
    }

    friend void beast_close_socket(SocketStream& stream) { stream.socket_->Close(); }
    template <class Handler>
    friend void async_teardown(beast::role_type, SocketStream& stream, Handler&& handler) {
        stream.socket_->Finish();
        asio::post(stream.get_executor(), beast::bind_handler(std::forward<Handler>(handler), error_code()));
    }

private:
    /// Handlers of the library can only be moved.
    template <class Handler>
    static Socket::Transferred Shared(Handler handler) {
        return [shared = std::make_shared<Handler>(std::move(handler))](error_code error, std::size_t size) {
            (*shared)(error, size);
        };
    }

    std::shared_ptr<Socket> socket_;
};

class Conversation : public std::enable_shared_from_this<Conversation> {
public:
    Conversation(WebContext& web, const std::shared_ptr<Socket>& socket, Request request,
                 std::function<void()> onClosed)
        : web_(web),
          socket_(socket),
          stream_(socket),
          request_(std::move(request)),
          onClosed_(std::move(onClosed)),
          alarm_(web.context) {}

    void Start(const View& view) {
        socket_->BoundUnread();
        subscriber_ = std::make_shared<Subscriber>(view, request_.identity.credential, [weak = weak_from_this()] {
            if (const std::shared_ptr<Conversation> self = weak.lock()) {
                self->Pump();
            }
        });
        stream_.set_option(websocket::stream_base::timeout::suggested(beast::role_type::server));
        stream_.read_message_max(mostMessageBytes);
        stream_.text(true);
        upgrade_.method(beast::http::verb::get);
        upgrade_.target(request_.target);
        upgrade_.version(11);
        for (const auto& [name, value] : request_.headers) {
            upgrade_.insert(name, value);
        }
        stream_.async_accept(upgrade_, [self = shared_from_this()](error_code error) { self->OnAccepted(error); });
    }

private:
    void OnAccepted(error_code error) {
        if (error) {
            Close();
            return;
        }
        isWriting_ = false;
        web_.hub.Add(subscriber_, request_.Query("last-event-id").value_or(""));
        Read();
        Pump();
    }

    void Read() {
        stream_.async_read(incoming_, [self = shared_from_this()](error_code error, std::size_t) {
            if (error) {
                self->Close();
            } else {
                self->OnMessage();
            }
        });
    }

    void OnMessage() {
        const std::string text = beast::buffers_to_string(incoming_.data());
        incoming_.consume(incoming_.size());
        ++openCommands_;
        web_.api.Command(request_, text, [weak = weak_from_this()](const Json& answer) {
            if (const std::shared_ptr<Conversation> self = weak.lock()) {
                self->answers_.push_back(DumpJson(answer));
                self->Pump();
            }
        });
        isReadingLater_ = openCommands_ >= mostCommands;
        if (!isReadingLater_) {
            Read();
        }
    }

    void Pump() {
        if (isClosed_) {
            return;
        }
        if (isWriting_) {
            if (subscriber_->IsEnding()) {
                EndIn(endLimit);
            }
            return;
        }
        if (!answers_.empty()) {
            WriteAnswer();
        } else if (!pieces_.empty() || TakePieces()) {
            WritePiece();
        } else if (subscriber_->HasEnded()) {
            End();
        }
    }

    bool TakePieces() {
        for (StreamPiece& piece : web_.hub.TakeFor(*subscriber_)) {
            pieces_.push_back(std::move(piece));
        }
        return !pieces_.empty();
    }

    void WriteAnswer() {
        current_ = std::move(answers_.front());
        answers_.pop_front();
        --openCommands_;
        if (std::exchange(isReadingLater_, false)) {
            Read();
        }
        Write(asio::buffer(current_));
    }

    void WritePiece() {
        writing_ = std::move(pieces_.front().text);
        pieces_.pop_front();
        Write(asio::buffer(writing_->Data().data(), writing_->Data().size()));
    }

    void Write(asio::const_buffer message) {
        isWriting_ = true;
        stream_.async_write(message, [self = shared_from_this()](error_code error, std::size_t) {
            self->isWriting_ = false;
            if (error) {
                self->Close();
            } else {
                self->Pump();
            }
        });
    }

    void End() {
        isWriting_ = true;
        EndIn(endLimit);
        stream_.async_close(websocket::close_code::policy_error,
                            [self = shared_from_this()](error_code) { self->Close(); });
    }

    void EndIn(std::chrono::steady_clock::duration limit) {
        alarm_.In(limit, [weak = weak_from_this()] {
            if (const std::shared_ptr<Conversation> self = weak.lock()) {
                self->Close();
            }
        });
    }

    void Close() {
        if (!std::exchange(isClosed_, true)) {
            alarm_.Cancel();
            web_.hub.Remove(subscriber_);
            socket_->Close();
            std::exchange(onClosed_, nullptr)();
        }
    }

    WebContext& web_;
    std::shared_ptr<Socket> socket_;
    websocket::stream<SocketStream> stream_;
    const Request request_;
    std::function<void()> onClosed_;
    Alarm alarm_;
    beast::http::request<beast::http::empty_body> upgrade_;
    beast::flat_buffer incoming_;
    std::shared_ptr<Subscriber> subscriber_;
    std::deque<StreamPiece> pieces_;
    std::deque<std::string> answers_;
    SharedText writing_;
    std::string current_;
    std::size_t openCommands_ = 0;
    bool isReadingLater_ = false;
    bool isWriting_ = true;
    bool isClosed_ = false;
};

}  // namespace

bool IsUpgrade(const Request& request) {
    beast::http::request<beast::http::empty_body> upgrade{beast::http::verb::get, request.target, 11};
    for (const auto& [name, value] : request.headers) {
        upgrade.insert(name, value);
    }
    return websocket::is_upgrade(upgrade);
}

void ServeWebSocket(WebContext& web, const std::shared_ptr<Socket>& socket, const Request& request, const View& view,
                    std::function<void()> onClosed) {
    std::make_shared<Conversation>(web, socket, request, std::move(onClosed))->Start(view);
}

}  // namespace Morquil::Gateway
