// A transport without a network: it waits on the simulated clock.
#pragma once

#include <array>
#include <string>

#include "tests/worlds/simulation/dice.h"
#include "tests/worlds/simulation/scheduler.h"
#include "tests/worlds/simulation/wire.h"
#include "transport/abstract_comms.h"

namespace Morquil::Testing::Worlds {

/// How the network and the device's socket behave.
struct NetworkManners {
    enum class Opening { Succeeds, IsRefused, Hangs };

    Opening opening = Opening::Succeeds;
    Time openingTime = 0;
    /// The device accepts at most this many bytes of one send.
    std::size_t sendLimit = static_cast<std::size_t>(-1);
    /// From this time on the device accepts no bytes at all, but the connection is kept.
    Time readsUntil = never;
    /// From this time on sends fail.
    Time sendsFailFrom = never;
    /// A close is found by a receive that gets nothing; otherwise the wait reports it.
    bool closesAtReceive = false;
};

/// One connection. Wire, manners and listener outlive it.
class SimulatedComms final : public AbstractComms {
public:
    SimulatedComms(Wire& wire, const NetworkManners& manners, WireListener& listener)
        : wire_(wire), manners_(manners), listener_(listener) {}
    ~SimulatedComms() override { listener_.Destroyed(); }

    bool Initialise() override { return true; }
    bool Open(const std::string& host, std::uint32_t port, bool nonBlocking) override;
    bool WaitForConnect(std::int32_t) override { return isOpen_; }
    bool Attach(SocketHandle, bool) override { return true; }
    void Close() override;
    std::uint32_t SetWaitMode(bool includeSocket, std::uint32_t timeoutMs) override;
    CommsEvent WaitForEvent() override;
    int Receive(char* buffer, int length, int flags) override;
    int Send(const char* data, int length, int flags) override;
    bool Signal(int which) override;
    void WaitUntilWritable() override;

private:
    bool IsSignalled() const { return signals_[0] || signals_[1] || signals_[2]; }
    bool HasSocketEvent() const;
    CommsEvent TakeSocketEvent();
    bool TakeSignal(CommsSignal signal);

    Wire& wire_;
    const NetworkManners& manners_;
    WireListener& listener_;
    bool isOpen_ = false;
    bool isArmed_ = false;         ///< `Writable` has not been reported yet
    bool isReadReported_ = false;  ///< `Readable` has been reported since the last receive
    bool includesSocket_ = false;
    Time timeout_ = 0;
    bool hasTransferred_ = false;  ///< a byte has been received or sent since the last wait began
    Time silentSince_ = 0;
    std::array<bool, 3> signals_{};
    std::string unfinished_;
};

}  // namespace Morquil::Testing::Worlds
