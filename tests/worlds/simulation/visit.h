#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "device/device.h"
#include "tests/worlds/simulation/counted_observer.h"
#include "tests/worlds/simulation/dice.h"
#include "tests/worlds/simulation/scheduler.h"
#include "tests/worlds/simulation/simulated_comms.h"

namespace Morquil::Testing::Worlds {

/// All notifications of a host, in one list.
class Listener {
public:
    explicit Listener(CMorquilDevice& device);

    /// Sets of properties by their ids, and the two below.
    const std::vector<std::uint32_t>& Calls() const { return calls_; }

    static constexpr std::uint32_t connected = 1;
    static constexpr std::uint32_t disconnected = 2;
    /// The number of sets.
    static const std::size_t propertySets;

private:
    struct Connection final : CountedObserver<IMorquilConnectionObserver> {
        STDMETHODIMP Connected() override { return calls->push_back(connected), S_OK; }
        STDMETHODIMP Disconnected(_MorquilConnectToFailure) override { return calls->push_back(disconnected), S_OK; }
        std::vector<std::uint32_t>* calls = nullptr;
    };
    struct Properties final : CountedObserver<IMorquilPropertyObserver> {
        STDMETHODIMP PropertyChanged(_MorquilPropertySetId set) override {
            return calls->push_back(static_cast<std::uint32_t>(set)), S_OK;
        }
        std::vector<std::uint32_t>* calls = nullptr;
    };

    std::vector<std::uint32_t> calls_;
    Connection connection_;
    Properties properties_;
};

/// A host's visit to a device that sends a given script and nothing else: from the connection until nothing more
/// happens. The seed decides which thread goes first where the order is open.
class Visit {
public:
    Visit(std::uint64_t seed, Wire wire, const NetworkManners& manners = {});
    ~Visit();
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    const std::vector<std::uint32_t>& Calls() const { return listener_.Calls(); }
    CMorquilDevice& Device() const { return *device_; }

private:
    SeededDice dice_;
    Wire wire_;
    const NetworkManners manners_;
    WireListener nobody_;
    CMorquilDevice* device_ = new CMorquilDevice(std::make_unique<SimulatedComms>(wire_, manners_, nobody_));
    Listener listener_{*device_};
};

}  // namespace Morquil::Testing::Worlds
