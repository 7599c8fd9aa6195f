#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "device/device.h"
#include "tests/worlds/simulation/counted_observer.h"
#include "tests/worlds/simulation/dice.h"
#include "tests/worlds/simulation/model.h"
#include "tests/worlds/simulation/spoken_keys.h"
#include "tests/worlds/simulation/trace.h"

namespace Morquil::Testing::Worlds {

/// A host that does anything with one device object that the interface allows, also inside its callbacks. Holds one
/// reference to the object until it releases it.
class Host {
public:
    /// Its observers are numbered from `firstObserver` on. `onDisconnected` is called when one is notified of the end.
    Host(Dice& dice, Trace& trace, Model& model, std::size_t firstObserver, std::function<void()> onDisconnected);

    /// Takes over the reference.
    void Take(CMorquilDevice* device) { device_ = device; }
    bool HasDevice() const { return device_ != nullptr; }

    void Connect(bool isAsynchronous);
    /// One call of any kind.
    void Act();
    /// A few observers from the start.
    void AddObservers();
    void ReleaseDevice();
    /// Whether no thread waits for the initial state any more.
    bool AttemptIsOver() const;
    /// Compares everything that the model knows with what the getters return.
    void ReadAll();
    /// All observers have been released.
    void CheckObserversReleased();

private:
    class ConnectionWatcher final : public CountedObserver<IMorquilConnectionObserver> {
    public:
        STDMETHODIMP Connected() override;
        STDMETHODIMP Disconnected(_MorquilConnectToFailure reason) override;
        Host* host = nullptr;
        std::size_t number = 0;
    };
    class PropertyWatcher final : public CountedObserver<IMorquilPropertyObserver> {
    public:
        STDMETHODIMP PropertyChanged(_MorquilPropertySetId set) override;
        Host* host = nullptr;
        std::size_t number = 0;
    };
    class Call;

    void InsideCallback();
    void Set(const SpokenKey& key);
    void Read(const SpokenKey& key);
    void SetBadText();
    void AddPropertyObserver();
    void RemovePropertyObserver();
    void ChangeConnectionObservers();
    void Query();
    void Disconnect();
    void Load();
    void Save();
    bool OthersAreInCalls() const;
    template <class Interface>
    Interface* Ask(const IID& iid);
    void ReleaseFeature(IUnknown* feature);

    Dice& dice_;
    Trace& trace_;
    Model& model_;
    const std::function<void()> onDisconnected_;
    CMorquilDevice* device_ = nullptr;
    ULONG references_ = 1;  ///< the host's own
    bool connects_ = false;
    QRN::Core::ThreadId timerThread_ = 0;
    std::array<ConnectionWatcher, 2> connectionWatchers_;
    std::array<PropertyWatcher, 3> propertyWatchers_;
    std::map<QRN::Core::ThreadId, int> callsInProgress_;
};

}  // namespace Morquil::Testing::Worlds
