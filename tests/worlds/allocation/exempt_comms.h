#pragma once

#include <memory>
#include <string>
#include <utility>

#include "tests/worlds/allocation/scarce_memory.h"
#include "transport/abstract_comms.h"

namespace Morquil::Testing {

/// A transport whose memory never runs out.
class ExemptComms final : public AbstractComms {
public:
    explicit ExemptComms(std::unique_ptr<AbstractComms> comms) : comms_(std::move(comms)) {}
    ~ExemptComms() override {
        const Exempt test;
        comms_.reset();
    }
    // clang-format off
    bool Initialise() override { const Exempt test; return comms_->Initialise(); }
    bool Open(const std::string& host, std::uint32_t port, bool nonBlocking) override
        { const Exempt test; return comms_->Open(host, port, nonBlocking); }
    bool WaitForConnect(std::int32_t timeoutMs) override { const Exempt test; return comms_->WaitForConnect(timeoutMs); }
    bool Attach(SocketHandle socket, bool nonBlocking) override
        { const Exempt test; return comms_->Attach(socket, nonBlocking); }
    void Close() override { const Exempt test; comms_->Close(); }
    std::uint32_t SetWaitMode(bool includeSocket, std::uint32_t timeoutMs) override
        { const Exempt test; return comms_->SetWaitMode(includeSocket, timeoutMs); }
    CommsEvent WaitForEvent() override { const Exempt test; return comms_->WaitForEvent(); }
    int Receive(char* buffer, int length, int flags) override
        { const Exempt test; return comms_->Receive(buffer, length, flags); }
    int Send(const char* data, int length, int flags) override
        { const Exempt test; return comms_->Send(data, length, flags); }
    bool Signal(int which) override { const Exempt test; return comms_->Signal(which); }
    void WaitUntilWritable() override { const Exempt test; comms_->WaitUntilWritable(); }
    // clang-format on

private:
    std::unique_ptr<AbstractComms> comms_;
};

}  // namespace Morquil::Testing
