#pragma once

#include <cstddef>
#include <string>

#include "MorquilAPI.h"
#include "observers/observable_property_set.h"
#include "protocol/any_block.h"

namespace Morquil {

/// What the device needs from every feature object, whatever its blocks.
class FeatureBase : public CObservablePropertySet {
public:
    /// The places in the block table of the blocks that a feature keeps. `availability` is beyond the table for a
    /// feature that has no such block.
    struct Blocks {
        std::size_t settings;
        std::size_t availability;
    };

    FeatureBase(REFIID iid, _MorquilPropertySetId propertySet, Blocks blocks)
        : CObservablePropertySet(propertySet), iid_(iid), blocks_(blocks) {}

    /// The identifier by which a host queries for the interface.
    REFIID Iid() const { return iid_; }
    /// The interface that the host sees; its references are counted by the device.
    virtual IUnknown* AsUnknown() = 0;

    bool KeepsSettings(std::size_t place) const { return blocks_.settings == place; }
    bool KeepsAvailability(std::size_t place) const { return blocks_.availability == place; }
    /// Merges the block that it keeps. Notifies the observers if `notify` is set and one of this feature's values has
    /// changed.
    virtual void ApplySettings(AnyBlock block, bool notify) = 0;
    virtual void ApplyAvailability(AnyBlock block) = 0;
    /// Whether everything that a connection waits for has been reported.
    virtual bool IsCacheComplete() const = 0;
    /// Clears everything that was reported.
    virtual void ClearCache() = 0;
    /// The protocol text of the settings as reported.
    virtual std::string GetSettingsText() const = 0;

private:
    const IID& iid_;
    const Blocks blocks_;
};

}  // namespace Morquil
