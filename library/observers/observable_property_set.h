#pragma once

#include "MorquilAPI.h"
#include "observers/observer_list.h"

/// One property set's observers. Its owner decides when something has changed; this class tells.
class CObservablePropertySet {
public:
    /// `propertySet` is what every observer is told.
    explicit CObservablePropertySet(_MorquilPropertySetId propertySet) : propertySet_(propertySet) {}
    virtual ~CObservablePropertySet() = default;
    CObservablePropertySet(const CObservablePropertySet&) = delete;
    CObservablePropertySet& operator=(const CObservablePropertySet&) = delete;

    /// Adds `observer` at the end and a reference to it. Waits for calls on their way, unless called from one.
    /// Returns: S_OK, S_FALSE when it is there already, E_POINTER for null, E_OUTOFMEMORY, E_ACCESSDENIED.
    virtual HRESULT AddObserver(IMorquilPropertyObserver* observer);
    /// Takes `observer` and its reference away. Waits for calls on their way, unless called from one.
    /// Returns: S_OK, S_FALSE when it is not there, E_ACCESSDENIED.
    virtual HRESULT RemoveObserver(IMorquilPropertyObserver* observer);
    /// Calls `PropertyChanged` on every observer, in order of addition. On the connection thread.
    virtual void NotifyObservers();

    _MorquilPropertySetId PropertySet() const { return propertySet_; }
    /// Nobody is told any more; a notification on its way ends after the call that it is in.
    void Silence() { observers_.Silence(); }

private:
    Morquil::ObserverList<IMorquilPropertyObserver> observers_;
    const _MorquilPropertySetId propertySet_;
};
