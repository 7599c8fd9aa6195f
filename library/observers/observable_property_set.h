#pragma once

#include "MorquilAPI.h"
#include "observers/observer_list.h"

/// The observers of one property set. Its owner decides when something has changed; this class notifies them.
class CObservablePropertySet {
public:
    /// `propertySet` is the id that every observer receives.
    explicit CObservablePropertySet(_MorquilPropertySetId propertySet) : propertySet_(propertySet) {}
    virtual ~CObservablePropertySet() = default;
    CObservablePropertySet(const CObservablePropertySet&) = delete;
    CObservablePropertySet& operator=(const CObservablePropertySet&) = delete;

    /// Adds `observer` at the end and takes a reference to it. Waits for calls in progress, unless called from one.
    /// Returns: S_OK, S_FALSE when it is already in the list, E_POINTER for null, E_OUTOFMEMORY, E_ACCESSDENIED.
    virtual HRESULT AddObserver(IMorquilPropertyObserver* observer);
    /// Removes `observer` and releases its reference. Waits for calls in progress, unless called from one.
    /// Returns: S_OK, S_FALSE when it is not in the list, E_ACCESSDENIED.
    virtual HRESULT RemoveObserver(IMorquilPropertyObserver* observer);
    /// Calls `PropertyChanged` on every observer in the order of addition. On the connection thread.
    virtual void NotifyObservers();

    _MorquilPropertySetId PropertySet() const { return propertySet_; }
    /// Stops all notifications. One in progress ends after its current call.
    void Silence() { observers_.Silence(); }

private:
    Morquil::ObserverList<IMorquilPropertyObserver> observers_;
    const _MorquilPropertySetId propertySet_;
};
