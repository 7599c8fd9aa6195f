#include "gateway/web/event_stream.h"

#include <array>
#include <utility>

#include "gateway/fleet/alarm.h"
#include "gateway/web/http_writer.h"

namespace Morquil::Gateway {
namespace {

namespace asio = boost::asio;
using boost::system::error_code;

// A client that has read nothing for so long is gone.
constexpr auto stallLimit = std::chrono::minutes(5);
constexpr auto endLimit = std::chrono::milliseconds(500);

class EventStream : public std::enable_shared_from_this<EventStream> {
public:
    EventStream(WebContext& web, std::shared_ptr<Socket> socket, std::string head, std::function<void()> onClosed)
        : web_(web),
          socket_(std::move(socket)),
          head_(std::move(head)),
          onClosed_(std::move(onClosed)),
          alarm_(web.context) {}

    void Start(const Request& request, const View& view) {
        socket_->BoundUnread();
        subscriber_ = std::make_shared<Subscriber>(view, request.identity.credential, [weak = weak_from_this()] {
            if (const std::shared_ptr<EventStream> self = weak.lock()) {
                self->Pump();
            }
        });
        isWriting_ = true;
        web_.hub.Add(subscriber_, request.Header("last-event-id"));
        Write({asio::buffer(head_)});
        Watch();
    }

private:
    /// Notices that the client has gone; what it sends is dropped.
    void Watch() {
        socket_->ReadSome(asio::buffer(unwanted_), [self = shared_from_this()](error_code error, std::size_t) {
            if (error) {
                self->Close();
            } else {
                self->Watch();
            }
        });
    }

    void Pump() {
        if (isClosed_) {
            return;
        }
        if (isWriting_) {
            if (subscriber_->IsEnding()) {
                CloseIn(endLimit);
            }
            return;
        }
        if (subscriber_->HasEnded()) {
            Close();
            return;
        }
        pieces_ = web_.hub.TakeFor(*subscriber_);
        if (pieces_.empty()) {
            alarm_.Cancel();
            return;
        }
        std::vector<asio::const_buffer> buffers;
        for (const StreamPiece& piece : pieces_) {
            const std::string_view text = piece.hasId ? piece.text->WithId() : piece.text->WithoutId();
            buffers.emplace_back(text.data(), text.size());
            if (!piece.hasId) {
                buffers.emplace_back("\n", 1);
            }
        }
        Write(buffers);
    }

    void Write(const std::vector<asio::const_buffer>& buffers) {
        isWriting_ = true;
        CloseIn(stallLimit);
        socket_->WriteAll(buffers, [self = shared_from_this()](error_code error, std::size_t) {
            self->isWriting_ = false;
            self->pieces_.clear();
            if (error) {
                self->Close();
            } else {
                self->Pump();
            }
        });
    }

    void CloseIn(std::chrono::steady_clock::duration limit) {
        alarm_.In(limit, [weak = weak_from_this()] {
            if (const std::shared_ptr<EventStream> self = weak.lock()) {
                self->Close();
            }
        });
    }

    void Close() {
        if (!std::exchange(isClosed_, true)) {
            alarm_.Cancel();
            web_.hub.Remove(subscriber_);
            socket_->Finish();
            socket_->Close();
            std::exchange(onClosed_, nullptr)();
        }
    }

    WebContext& web_;
    std::shared_ptr<Socket> socket_;
    std::string head_;
    std::function<void()> onClosed_;
    Alarm alarm_;
    std::shared_ptr<Subscriber> subscriber_;
    std::vector<StreamPiece> pieces_;
    std::array<char, 64> unwanted_ = {};
    bool isWriting_ = false;
    bool isClosed_ = false;
};

}  // namespace

void ServeEvents(WebContext& web, const std::shared_ptr<Socket>& socket, const Request& request, const View& view,
                 std::function<void()> onClosed) {
    std::make_shared<EventStream>(web, socket, StreamHead(request), std::move(onClosed))->Start(request, view);
}

}  // namespace Morquil::Gateway
