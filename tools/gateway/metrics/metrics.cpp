#include "gateway/metrics/metrics.h"

#include <prometheus/counter.h>
#include <prometheus/family.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>
#include <prometheus/text_serializer.h>

#include <map>

namespace Morquil::Gateway {
namespace {

using prometheus::Counter;
using prometheus::Family;
using prometheus::Gauge;
using prometheus::Histogram;
using prometheus::Registry;

Family<Gauge>& Gauges(Registry& registry, const char* name, const char* help) {
    return prometheus::BuildGauge().Name(name).Help(help).Register(registry);
}

Family<Counter>& Counters(Registry& registry, const char* name, const char* help) {
    return prometheus::BuildCounter().Name(name).Help(help).Register(registry);
}

/// From a fast device on the same switch to the deadline of a request.
const Histogram::BucketBoundaries& ConfirmBuckets() {
    static const Histogram::BucketBoundaries buckets{0.001, 0.0025, 0.005, 0.01, 0.025, 0.05,
                                                     0.1,   0.25,   0.5,   1.0,  2.5,   5.0};
    return buckets;
}

/// A counter shows a total that is counted elsewhere.
void RaiseTo(Counter& counter, double total) {
    counter.Increment(total - counter.Value());
}

struct DeviceFigures {
    Gauge* up = nullptr;
    Gauge* age = nullptr;  // null until the device has reported something
    Counter* reconnects = nullptr;
    bool isCurrent = true;
};

}  // namespace

// Figures appear in the text in the order of their members here.
class Metrics::Families {
public:
    Registry registry;

    Family<Gauge>& up = Gauges(registry, "morquil_link_up", "Whether the device is connected.");
    Family<Gauge>& age = Gauges(registry, "morquil_data_age_seconds", "Time since the device's last report.");
    Family<Counter>& reconnects =
        Counters(registry, "morquil_reconnects_total", "How often the device has been connected again after a loss.");
    Family<Counter>& changes =
        Counters(registry, "morquil_changes_total", "Requests to change a property, by outcome.");
    Counter& failed = Counters(registry, "morquil_changes_failed_total",
                               "Requests to change a property that the device has not confirmed.")
                          .Add({});
    Histogram& confirm = prometheus::BuildHistogram()
                             .Name("morquil_change_confirm_seconds")
                             .Help("Time until the device confirms a change.")
                             .Register(registry)
                             .Add({}, ConfirmBuckets());
    Gauge& clients = Gauges(registry, "morquil_stream_clients", "Open streams.").Add({});
    Gauge& queued = Gauges(registry, "morquil_stream_queued_bytes", "Bytes that wait for all stream clients.").Add({});
    Gauge& longest = Gauges(registry, "morquil_stream_longest_queue_bytes",
                            "Bytes that wait for the stream client that is furthest back.")
                         .Add({});
    Counter& gaps =
        Counters(registry, "morquil_stream_gaps_total", "Gaps that stream clients were notified of.").Add({});
    Gauge& databaseBytes = Gauges(registry, "morquil_database_bytes", "Size of the database.").Add({});
    Gauge& databasePending = Gauges(registry, "morquil_database_pending_rows", "Rows that wait to be written.").Add({});
    Gauge& databaseWriting =
        Gauges(registry, "morquil_database_writing", "Whether the database accepts what is written.").Add({});
    Counter& databaseLost =
        Counters(registry, "morquil_database_lost_rows_total", "Rows that were dropped because too many waited.")
            .Add({});

    DeviceFigures& Of(const std::string& device) {
        DeviceFigures& figures = devices_[device];
        if (figures.up == nullptr) {
            figures.up = &up.Add({{"device", device}});
            figures.reconnects = &reconnects.Add({{"device", device}});
        }
        return figures;
    }
    void SetAge(const std::string& device, double seconds) {
        DeviceFigures& figures = Of(device);
        if (figures.age == nullptr) {
            figures.age = &age.Add({{"device", device}});
        }
        figures.age->Set(seconds);
    }
    void ForgetOthers() {
        std::erase_if(devices_, [&](const auto& entry) {
            const bool isOld = !entry.second.isCurrent;
            if (isOld) {
                Remove(entry.second);
            }
            return isOld;
        });
        for (auto& [device, figures] : devices_) {
            figures.isCurrent = false;
        }
    }

private:
    void Remove(const DeviceFigures& figures) {
        up.Remove(figures.up);
        reconnects.Remove(figures.reconnects);
        if (figures.age != nullptr) {
            age.Remove(figures.age);
        }
    }

    std::map<std::string, DeviceFigures> devices_;
};

Metrics::Metrics() : families_(std::make_unique<Families>()) {}

Metrics::~Metrics() = default;

void Metrics::SetLink(const std::string& device, bool isUp, double age, std::uint64_t reconnects) {
    DeviceFigures& figures = families_->Of(device);
    figures.isCurrent = true;
    figures.up->Set(isUp ? 1 : 0);
    RaiseTo(*figures.reconnects, static_cast<double>(reconnects));
    if (age >= 0) {
        families_->SetAge(device, age);
    }
}

void Metrics::ForgetOthers() {
    families_->ForgetOthers();
}

void Metrics::CountChange(std::string_view outcome, bool hasFailed) {
    families_->changes.Add({{"outcome", std::string(outcome)}}).Increment();
    families_->failed.Increment(hasFailed ? 1 : 0);
}

void Metrics::ObserveConfirm(double seconds) {
    families_->confirm.Observe(seconds);
}

void Metrics::SetStreams(const StreamFigures& figures) {
    families_->clients.Set(static_cast<double>(figures.clients));
    families_->queued.Set(static_cast<double>(figures.queuedBytes));
    families_->longest.Set(static_cast<double>(figures.longestQueue));
    RaiseTo(families_->gaps, static_cast<double>(figures.gaps));
}

void Metrics::SetDatabase(const DatabaseFigures& figures) {
    families_->databaseBytes.Set(static_cast<double>(figures.bytes));
    families_->databasePending.Set(static_cast<double>(figures.pending));
    families_->databaseWriting.Set(figures.isWriting ? 1 : 0);
    RaiseTo(families_->databaseLost, static_cast<double>(figures.lost));
}

std::string Metrics::Text() const {
    return prometheus::TextSerializer().Serialize(families_->registry.Collect());
}

}  // namespace Morquil::Gateway
