#include "device/observable_property_set.h"

HRESULT CObservablePropertySet::AddObserver(IMorquilPropertyObserver* observer) {
    return observers_.Add(observer);
}

HRESULT CObservablePropertySet::RemoveObserver(IMorquilPropertyObserver* observer) {
    return observers_.Remove(observer);
}

void CObservablePropertySet::NotifyObservers() {
    Morquil::ObserverList<IMorquilPropertyObserver>::Round round(observers_);
    round.CallEach([this](IMorquilPropertyObserver& observer) { observer.PropertyChanged(propertySet_); });
}
