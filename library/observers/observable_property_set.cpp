#include "observers/observable_property_set.h"

HRESULT CObservablePropertySet::AddObserver(IMorquilPropertyObserver* observer) {
    return observers_.Add(observer);
}

HRESULT CObservablePropertySet::RemoveObserver(IMorquilPropertyObserver* observer) {
    return observers_.Remove(observer);
}

void CObservablePropertySet::NotifyObservers() {
    // A round is expensive, and most sets have no observers.
    if (observers_.IsEmpty()) {
        return;
    }
    Morquil::ObserverList<IMorquilPropertyObserver>::Round round(observers_);
    round.CallEach([this](IMorquilPropertyObserver& observer) { observer.PropertyChanged(propertySet_); });
}
