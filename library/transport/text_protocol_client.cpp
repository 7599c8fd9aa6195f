#include "transport/text_protocol_client.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <utility>

#include "core/clock.h"
#include "core/lock.h"
#include "core/wait_graph.h"
#include "protocol/text/ascii.h"
#include "protocol/text/format_text.h"
#include "transport/console.h"

namespace Morquil {

using QRN::Core::CurrentThreadId;
using QRN::Core::JoinScope;
using QRN::Core::JoinThread;
using QRN::Core::Lock;

TextProtocolClient::TextProtocolClient(std::unique_ptr<AbstractComms> comms)
    : comms_(std::move(comms)), initialised_(comms_->Initialise()) {}

TextProtocolClient::~TextProtocolClient() {
    Stop();
    // A connection thread that destroys its own client cannot wait for itself: it only releases its handle.
    Lock lock(joinLock_);
    JoinThread(thread_, nullptr, threadId_);
}

bool TextProtocolClient::SetServer(std::string host, std::uint32_t port) {
    if (running_) {
        return false;
    }
    host_ = std::move(host);
    port_ = port;
    stopRequested_ = false;
    return true;
}

bool TextProtocolClient::Start() {
    if (running_) {
        return true;
    }
    WaitForThread();
    if (!Connect()) {
        Print("Error connecting to server\n");
        return false;
    }
    rules_ = {};
    hasReceived_ = true;
    lastReceived_ = QRN::Core::Now();
    OnConnectionChanged(true);
    if (StartThread()) {
        return true;
    }
    Disconnected();
    return false;
}

/// Takes a stop wake-up that the last connection left pending: it would end the next attempt at once.
void TextProtocolClient::DiscardStaleStop() {
    if (!stopSignalled_.exchange(false)) {
        return;
    }
    comms_->SetWaitMode(false, 0);
    comms_->Signal(signalStop);  // an attempt may have taken it; now exactly one is pending
    bool sendPending = false;
    CommsEvent event = comms_->WaitForEvent();
    while (event != CommsEvent::StopRequested && event != CommsEvent::Timeout && event != CommsEvent::WaitFailed) {
        sendPending |= event == CommsEvent::SendRequested;
        event = comms_->WaitForEvent();
    }
    if (sendPending) {
        comms_->Signal(signalSend);
    }
}

bool TextProtocolClient::Connect() {
    DiscardStaleStop();
    opening_ = true;
    const bool opened = initialised_ && !stopRequested_ && comms_->Open(host_, port_, false);
    opening_ = false;
    if (!opened) {
        return false;
    }
    if (!comms_->WaitForConnect(connectWaitMs)) {
        comms_->Close();
        return false;
    }
    return true;
}

bool TextProtocolClient::StartThread() {
    Lock join(joinLock_);
    Lock start(startLock_);
    if (stopRequested_) {
        return false;
    }
    running_ = true;
    OnThreadStarting();
    if (QRN::Core::StartThread(thread_, &ThreadMain, this) == 0) {
        return true;
    }
    running_ = false;
    OnThreadEnding();
    return false;
}

/// Makes the client idle again and reports the end of the connection if notices are wanted.
void TextProtocolClient::Disconnected() {
    running_ = false;
    comms_->Close();
    if (disconnectNoticeCount_ != 0) {
        OnConnectionChanged(false);
    }
}

/// Waits for the thread, if there is one, to end. A requested stop was meant for that thread and is cleared.
void TextProtocolClient::WaitForThread() {
    Lock lock(joinLock_);
    if (thread_) {
        // A thread that starts its own successor only releases its handle.
        JoinThread(thread_, nullptr, threadId_);
        threadId_ = 0;
        stopRequested_ = false;
    }
}

void TextProtocolClient::Stop() {
    if (RequestStop()) {
        Join();
    }
}

bool TextProtocolClient::RequestStop() {
    {
        Lock lock(startLock_);
        stopRequested_ = true;
    }
    // No wake-up is needed here: the connection thread itself checks `stopRequested_`, and so does a start that has not
    // begun to connect. A wake-up left pending would end the next connection.
    if (IsOnConnectionThread() || (!running_ && !opening_)) {
        return true;
    }
    stopSignalled_ = true;
    if (comms_->Signal(signalStop)) {
        return true;
    }
    Print("Could not signal the connection thread to stop\n");
    return false;
}

void TextProtocolClient::Join() {
    const JoinScope wait(threadId_);
    if (wait.IsCircular()) {
        return;
    }
    WaitForThread();
}

std::uint32_t TextProtocolClient::ThreadMain(void* client) {
    auto* const self = static_cast<TextProtocolClient*>(client);
    self->threadId_ = CurrentThreadId();
    self->Run();
    self->receivedText_.Finish();
    self->Disconnected();
    self->OnThreadEnding();
    return 0;
}

void TextProtocolClient::Run() {
    try {
        do {
            const QRN::Core::Clock::time_point now = QRN::Core::Now();
            if (std::exchange(hasReceived_, false)) {
                lastReceived_ = now;
            }
            comms_->SetWaitMode(true, rules_.NextWaitMs(now));
        } while (Do(NextAction()) && !stopRequested_);
    } catch (...) {
        // Without memory for a block the mirror would be wrong from here on, so the connection ends.
        gathering_ = false;
    }
}

HRESULT TextProtocolClient::GetSilence(UINT& milliseconds) const {
    if (!running_) {
        return E_FAIL;
    }
    // In this order: bytes that arrive in between would make the silence negative.
    const QRN::Core::Clock::time_point lastReceived = lastReceived_;
    const auto silence = QRN::Core::Now() - lastReceived;
    milliseconds = static_cast<UINT>(std::chrono::duration_cast<std::chrono::milliseconds>(silence).count());
    return S_OK;
}

LinkRules::Action TextProtocolClient::NextAction() {
    const CommsEvent event = comms_->WaitForEvent();
    const bool wasInterrupted = errno == EINTR;
    if (event == CommsEvent::StopRequested) {
        stopSignalled_ = false;
    } else if (event == CommsEvent::UserSignal) {
        OnWoken();
    }
    return rules_.OnEvent(event, wasInterrupted);
}

/// Returns whether the connection continues.
bool TextProtocolClient::Do(LinkRules::Action action) {
    switch (action) {
        case LinkRules::Action::Wait:
            return true;
        case LinkRules::Action::SendNext:
            SendNextMessage();
            return true;
        case LinkRules::Action::SendPing:
            OnSilence();
            SendFormatted("PING\n\n");
            rules_.OnPingSent();
            return true;
        case LinkRules::Action::Receive:
            ReceiveAvailable();
            return true;
        case LinkRules::Action::ReportLoss:
            Print("Network error on the socket\n");
            return false;
        case LinkRules::Action::End:
            return false;
    }
    return true;
}

void TextProtocolClient::Acknowledge() {
    Do(rules_.OnAcknowledged());
}

void TextProtocolClient::SendNextMessage() {
    const std::unique_ptr<TextProtocolMessageBase> message = TakeNextMessage();
    if (message != nullptr) {
        WriteMessage(*message);
        rules_.OnBlockSent();
    }
}

/// Sends the whole block at once: sent piece by piece it would wait for the device's delayed acknowledgements.
void TextProtocolClient::WriteMessage(const TextProtocolMessageBase& message) {
    gathered_.clear();
    gathering_ = true;
    message.WriteTo(*this);
    gathering_ = false;
    SendAll(gathered_.data(), gathered_.size());
}

void TextProtocolClient::SendFormatted(const char* format, ...) {
    char piece[maximumPieceLength + 1];
    std::va_list arguments;
    va_start(arguments, format);
    const int formatted = FormatText(piece, sizeof piece, format, arguments);
    va_end(arguments);
    if (formatted < 1) {
        return;
    }
    const auto length = static_cast<std::size_t>(std::min(formatted, maximumPieceLength));
    if (IsOnConnectionThread() && gathering_) {
        gathered_.append(piece, length);
    } else {
        SendAll(piece, length);
    }
}

/// If the device does not read, waits until it reads, the connection breaks or a stop is requested. Only the connection
/// thread may wait; any other thread retries at once.
void TextProtocolClient::SendAll(const char* text, std::size_t length) {
    while (length > 0 && !stopRequested_) {
        const int sent = comms_->Send(text, static_cast<int>(length), 0);
        if (sent > 0) {
            text += sent;
            length -= static_cast<std::size_t>(sent);
            if (IsOnConnectionThread()) {
                rules_.OnBytesSent();
            }
        } else if (sent != commsWouldBlock) {
            if (running_) {
                Stop();
            }
            return;
        } else if (IsOnConnectionThread()) {
            comms_->WaitUntilWritable();
        }
    }
}

void TextProtocolClient::ReceiveAvailable() {
    LinkRules::Action next = LinkRules::Action::Receive;
    while (next == LinkRules::Action::Receive && !stopRequested_) {
        const int received = comms_->Receive(receiveBuffer_.data(), receiveSize, 0);
        if (received > 0) {
            // The console shows the received bytes as text, up to the first zero byte.
            const auto length = static_cast<std::size_t>(received);
            receivedText_.Print(UpToZero({receiveBuffer_.data(), length}));
            hasReceived_ = true;
            OnDataReceived(receiveBuffer_.data(), length);
        }
        next = rules_.OnReceived(received, receiveSize);
    }
    if (next == LinkRules::Action::End) {
        RequestStop();
    }
}

}  // namespace Morquil
