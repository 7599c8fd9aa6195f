// Notices of changes, with old and new value.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "morquil/property.hpp"

namespace morquil {

/// A property has another value than before.
struct PropertyChange {
    Property property;
    /// Nothing stands for a value that is not known.
    std::optional<PropertyValue> before;
    std::optional<PropertyValue> after;
    /// `Echo`: the device repeats exactly what this host has set.
    ReportOrigin origin;
};

namespace detail {

/// Compares what the device reports with what was known before. It does so on the connection's thread: meanwhile the
/// mirror does not change.
class PropertyWatch final : public HostObject<IMorquilReportObserver> {
public:
    using Handler = std::function<void(const PropertyChange&)>;

    PropertyWatch(std::shared_ptr<Gate> gate, const std::vector<Property>& properties, Handler handler)
        : gate_(std::move(gate)), handler_(std::make_shared<Handler>(std::move(handler))) {
        for (const Property& property : properties) {
            if (property.Info().isReadable) {
                watched_.push_back({property, std::nullopt});
            }
        }
    }

    /// Registers itself, and reads the first values. What is reported meanwhile waits for the lock.
    void Begin(IMorquilDelivery* delivery) {
        const std::lock_guard lock(mutex_);
        Check("Device::OnPropertyChange", delivery->AddReportObserver(this), CallKind::Set);
        for (Watched& watched : watched_) {
            watched.value = watched.property.Known();
        }
    }

    STDMETHODIMP BlockReported(_MorquilPropertySetId set, _MorquilReportKind kind,
                               _MorquilReportOrigin origin) noexcept override {
        const CallbackScope scope;
        if (kind == static_cast<_MorquilReportKind>(ReportKind::Settings)) {
            for (PropertyChange& change : Changes(static_cast<PropertySet>(set), static_cast<ReportOrigin>(origin))) {
                Gate::Pass(gate_, [handler = handler_, change = std::move(change)] { (*handler)(change); });
            }
        }
        return S_OK;
    }

private:
    struct Watched {
        Property property;
        std::optional<PropertyValue> value;
    };

    std::vector<PropertyChange> Changes(PropertySet set, ReportOrigin origin) {
        const std::lock_guard lock(mutex_);
        std::vector<PropertyChange> changes;
        for (Watched& watched : watched_) {
            if (watched.property.Info().set == set) {
                std::optional<PropertyValue> before = std::exchange(watched.value, watched.property.Known());
                if (before != watched.value) {
                    changes.push_back({watched.property, std::move(before), watched.value, origin});
                }
            }
        }
        return changes;
    }

    const std::shared_ptr<Gate> gate_;
    const std::shared_ptr<Handler> handler_;
    std::mutex mutex_;
    std::vector<Watched> watched_;
};

}  // namespace detail

template <class Text>
Subscription Device::OnPropertyChange(const Text& pattern, std::function<void(const PropertyChange&)> handler,
                                      Executor executor) const {
    const std::vector<Property> properties = Properties(pattern);
    if (properties.empty()) {
        detail::ThrowNoSuchProperty(pattern);
    }
    auto gate = std::make_shared<detail::Gate>(std::move(executor));
    const auto delivery = detail::AskForDelivery<IMorquilDelivery>(Raw(), "Device::OnPropertyChange");
    const auto watch =
        Pointer<detail::PropertyWatch>::Adopt(new detail::PropertyWatch(gate, properties, std::move(handler)));
    watch->Begin(delivery.Get());
    return Subscription(std::move(gate), [delivery, watch] { delivery->RemoveReportObserver(watch.Get()); });
}

}  // namespace morquil
