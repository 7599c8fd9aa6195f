#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "MorquilAPI.h"
#include "core/clock.h"
#include "core/lockable.h"
#include "core/thread.h"
#include "core/thread_safety.h"
#include "protocol/table/message.h"
#include "protocol/text/message_sender.h"
#include "transport/abstract_comms.h"
#include "transport/console.h"
#include "transport/link_rules.h"

namespace Morquil {

/// One connection to one device and the thread that serves it. Waits, sends and receives as `LinkRules` decide. Knows
/// no specific block.
///
/// A derived class must call `Stop` first in its destructor, before anything that the thread uses is destroyed.
class TextProtocolClient : public IMessageSender {
public:
    /// `comms` must not be initialised yet.
    explicit TextProtocolClient(std::unique_ptr<AbstractComms> comms);
    ~TextProtocolClient() override;
    TextProtocolClient(const TextProtocolClient&) = delete;
    TextProtocolClient& operator=(const TextProtocolClient&) = delete;

    /// Sets the address to connect to (host name or dotted address, UTF-8). Also allows a new `Start` after a `Stop`
    /// that found nothing to stop.
    /// Returns: false while the client is running; nothing has changed.
    bool SetServer(std::string host, std::uint32_t port);

    /// Connects, for at most 2 s, and starts the connection thread. Returns at once when it is already running.
    /// Returns: false when there is no connection, also when `Stop` was called meanwhile.
    bool Start();

    /// Ends the connection and waits for its thread to end. On the connection thread itself it only requests the end. A
    /// `Start` that is still connecting gives up.
    /// Threads: any, also several at once.
    void Stop();

    void BeginMessage() override {}
    /// The pieces of a message are gathered and sent together. Any other piece is sent at once.
    [[gnu::format(printf, 2, 3)]] void SendFormatted(const char* format, ...) override;
    bool EndMessage() override { return true; }

protected:
    /// The next message to send, or none. On the connection thread.
    virtual std::unique_ptr<TextProtocolMessageBase> TakeNextMessage() = 0;
    /// Bytes have arrived. On the connection thread.
    virtual void OnDataReceived(const char* bytes, std::size_t length) = 0;
    /// The connection is up (called on the thread that called `Start`) or has ended (called on the connection thread).
    virtual void OnConnectionChanged(bool connected) = 0;
    /// A connection thread is about to be started. A call of `OnThreadEnding` always follows.
    virtual void OnThreadStarting() {}
    /// The connection thread's last call. It may destroy the client.
    virtual void OnThreadEnding() {}

    /// The connection was woken by `WakeConnection`. On the connection thread.
    virtual void OnWoken() {}
    /// The device is silent and is about to be asked whether it is still there. On the connection thread.
    virtual void OnSilence() {}

    /// The device has answered: sends the next message, if one is pending. On the connection thread.
    void Acknowledge();
    /// What has been sent and answered. On the connection thread.
    const LinkRules& Rules() const { return rules_; }
    /// For how long the device has sent nothing.
    /// Returns: S_OK, or E_FAIL when there is no connection.
    /// Threads: any.
    HRESULT GetSilence(UINT& milliseconds) const;
    /// Requests the end of the connection thread and of a `Start` that is still connecting.
    /// Returns: whether the request could be delivered.
    bool RequestStop();
    bool IsOnConnectionThread() const { return threadId_ == QRN::Core::CurrentThreadId(); }
    bool WakeSender() { return comms_->Signal(signalSend); }
    bool WakeConnection() { return comms_->Signal(signalUser); }

    /// The end of the connection is reported only while this is not 0.
    std::atomic<std::uint32_t> disconnectNoticeCount_ = 0;

private:
    static constexpr std::int32_t connectWaitMs = 2000;
    static constexpr int receiveSize = 1024;

    static std::uint32_t ThreadMain(void* client);
    void DiscardStaleStop();
    bool Connect();
    bool StartThread();
    void Disconnected();
    void Join();
    void WaitForThread();
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
    std::atomic<bool> stopSignalled_ = false;  // and the wake-up has not been taken yet
    std::atomic<QRN::Core::ThreadId> threadId_ = 0;
    /// Makes checking for a requested stop and starting the thread one step.
    QRN::Core::Lockable startLock_;
    /// Held while waiting for the thread to end: a second caller waits for the first.
    QRN::Core::Lockable joinLock_;
    QRN::Core::ThreadHandle thread_ GUARDED_BY(joinLock_);
    /// When the connection thread last handled received bytes.
    std::atomic<QRN::Core::Clock::time_point> lastReceived_{};

    // Used by the connection thread only; `Start` prepares them before the thread exists.
    LinkRules rules_;
    bool hasReceived_ = true;
    ReceivedText receivedText_;
    bool gathering_ = false;
    std::string gathered_;
    std::array<char, receiveSize> receiveBuffer_{};
};

}  // namespace Morquil
