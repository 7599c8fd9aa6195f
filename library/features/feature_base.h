#pragma once

#include <string>

#include "MorquilAPI.h"
#include "observers/observable_property_set.h"

namespace Morquil {

/// What the device needs from every feature object, whatever its blocks.
class FeatureBase : public CObservablePropertySet {
public:
    FeatureBase(REFIID iid, _MorquilPropertySetId propertySet) : CObservablePropertySet(propertySet), iid_(iid) {}

    /// The identifier by which a host queries for the interface.
    REFIID Iid() const { return iid_; }
    /// The interface that the host sees; its references are counted by the device.
    virtual IUnknown* AsUnknown() = 0;
    /// Whether everything that a connection waits for has been reported.
    virtual bool IsCacheComplete() const = 0;
    /// Clears everything that was reported.
    virtual void ClearCache() = 0;
    /// The protocol text of the settings as reported.
    virtual std::string GetSettingsText() const = 0;

private:
    const IID& iid_;
};

}  // namespace Morquil
