#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "core/lockable.h"
#include "core/thread.h"
#include "core/thread_safety.h"
#include "protocol/table/message.h"
#include "protocol/text/message_sender.h"
#include "transport/abstract_comms.h"
#include "transport/link_rules.h"

namespace Morquil {

/// One connection to one device and the thread that serves it: waits, sends and receives as `LinkRules` say. Knows no
/// block by name.
///
/// A derived class stops the client first thing in its destructor, before anything that the thread uses goes.
class TextProtocolClient : public IMessageSender {
public:
    /// `comms` has not been initialised yet.
    explicit TextProtocolClient(std::unique_ptr<AbstractComms> comms);
    ~TextProtocolClient() override;
    TextProtocolClient(const TextProtocolClient&) = delete;
    TextProtocolClient& operator=(const TextProtocolClient&) = delete;

    /// Sets the address to connect to (host name or dotted address, UTF-8) and makes the client ready to start again
    /// after a `Stop` that found nothing to stop.
    /// Returns: false, and nothing changes, while it runs.
    bool SetServer(std::string host, std::uint32_t port);

    /// Connects, for 2 s at most, and starts the connection thread. Returns at once when it runs already.
    /// Returns: false when there is no connection, also because `Stop` came meanwhile.
    bool Start();

    /// Ends the connection and waits for its thread; on the connection thread itself it only asks it to end. A `Start`
    /// that is still connecting gives up.
    /// Threads: any, several at once.
    void Stop();

    void BeginMessage() override {}
    /// While a message writes itself its pieces are gathered and go out together; any other piece goes out at once.
    [[gnu::format(printf, 2, 3)]] void SendFormatted(const char* format, ...) override;
    bool EndMessage() override { return true; }

protected:
    /// The next message to send, or none. On the connection thread.
    virtual std::unique_ptr<TextProtocolMessageBase> TakeNextMessage() = 0;
    /// Bytes have arrived. On the connection thread.
    virtual void OnDataReceived(const char* bytes, std::size_t length) = 0;
    /// The connection has come (on the thread that called `Start`) or gone (on the connection thread).
    virtual void OnConnectionChanged(bool connected) = 0;
    /// A connection thread is about to be started. `OnThreadEnding` follows for certain.
    virtual void OnThreadStarting() {}
    /// The last call that the connection thread makes; it may destroy the client.
    virtual void OnThreadEnding() {}

    /// The device has answered: the next message may go. On the connection thread.
    void Acknowledge();
    /// Asks the connection thread, and a `Start` that is still connecting, to end.
    /// Returns: whether it could be asked.
    bool RequestStop();
    bool IsOnConnectionThread() const { return threadId_ == QRN::Core::CurrentThreadId(); }
    bool WakeSender() { return comms_->Signal(signalSend); }

    /// Notices that the connection has gone are given only while this is not 0.
    std::atomic<std::uint32_t> disconnectNoticeCount_ = 0;

private:
    static constexpr std::int32_t connectWaitMs = 2000;
    static constexpr int receiveSize = 1024;

    static std::uint32_t ThreadMain(void* client);
    void TakeLeftWakeUp();
    bool Connect();
    bool StartThread();
    void Disconnected();
    void Join();
    void LetThreadEnd();
    void Run();
    LinkRules::Action NextAction();
    bool Do(LinkRules::Action action);
    void SendNextMessage();
    void WriteMessage(const TextProtocolMessageBase& message);
    void SendAll(const char* text, std::size_t length);
    void ReceiveAvailable();

    const std::unique_ptr<AbstractComms> comms_;
    const bool initialised_;
    std::string host_;
    std::uint32_t port_ = 0;

    std::atomic<bool> running_ = false;
    std::atomic<bool> opening_ = false;
    std::atomic<bool> stopRequested_ = false;
    std::atomic<bool> stopSignalled_ = false;  // and nobody has taken the wake-up yet
    std::atomic<QRN::Core::ThreadId> threadId_ = 0;
    /// Makes "no stop was requested" and "the thread is started" one step.
    QRN::Core::Lockable startLock_;
    /// Held while the thread is waited for: whoever comes second waits for the first.
    QRN::Core::Lockable joinLock_;
    QRN::Core::ThreadHandle thread_ GUARDED_BY(joinLock_);

    // The connection thread's own; `Start` prepares them before there is one.
    LinkRules rules_;
    bool gathering_ = false;
    std::string gathered_;
    std::array<char, receiveSize> receiveBuffer_{};
};

}  // namespace Morquil
