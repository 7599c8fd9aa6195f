// Every row of the table against a device.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "properties/property.h"
#include "tests/unit/properties/complete_host.h"

namespace Morquil::Testing {
namespace {

using namespace Properties;
using Properties::Limits;  // not the namesake of the blocks

// Values that a property could have, whatever the device.
std::vector<Value> PossibleValues(const ValueType& type) {
    switch (type.kind) {
        case Kind::YesNo:
            return {true, false};
        case Kind::Decimal:
            return {1.0, 2.0};
        case Kind::Text:
            return {std::string("Studio \xc3\xa4"), std::string("Van 2")};
        case Kind::Word: {
            std::vector<Value> values;
            for (const NamedValue& named : type.words) {
                values.emplace_back(named.value);
            }
            return values;
        }
        case Kind::Nothing:
            return {std::string()};
        default:
            return {std::int64_t{1}, std::int64_t{2}};
    }
}

std::vector<Value> AcceptedValues(const Property& property, const morquil::Device& device) {
    const Offer offer = Offered(property, device);
    if (const Limits* const limits = std::get_if<Limits>(&offer)) {
        return {limits->smallest, limits->largest};
    }
    if (const auto* const words = std::get_if<std::vector<std::int64_t>>(&offer)) {
        return {words->begin(), words->end()};
    }
    return PossibleValues(property.type);
}

// An accepted value that the property does not have.
Value AnotherValue(const Property& property, const morquil::Device& device) {
    const std::optional<Value> present = Read(property, device);
    for (const Value& value : AcceptedValues(property, device)) {
        if (value != present) {
            return value;
        }
    }
    ADD_FAILURE() << property.name << " has one value only";
    return {};
}

/// A host whose device offers more than one value of a property.
class HostFor : public CompleteHost {
public:
    explicit HostFor(const Property& property) {
        if (property.name == "output.aspect-ratio") {
            DeviceSends("VIDEO OUTPUT:\nVideo mode: 625i50 PAL\n\n");
        }
    }
};

/// The property sets that have been notified of changes.
class NotifiedSets {
public:
    explicit NotifiedSets(const morquil::Device& device) {
        for (const Property& property : AllProperties()) {
            if (watched_.insert(property.set).second) {
                subscriptions_.push_back(device.OnChange(property.set, [this](morquil::PropertySet set) {
                    const std::lock_guard lock(mutex_);
                    notified_.insert(set);
                }));
            }
        }
    }
    std::set<morquil::PropertySet> Take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(notified_, {});
    }

private:
    std::mutex mutex_;
    std::set<morquil::PropertySet> notified_;
    std::set<morquil::PropertySet> watched_;
    std::vector<morquil::Subscription> subscriptions_;
};

TEST(EveryProperty, IsKnownOnceADeviceHasReportedEverything) {
    const CompleteHost host;
    for (const Property& property : AllProperties()) {
        EXPECT_EQ(Read(property, host.Device()).has_value(), property.IsReadable()) << property.name;
    }
}

TEST(EveryProperty, HasAnOfferIfTheDeviceReportsOne) {
    // Its words hold blanks, which also separate the words of a list: no device can report it.
    constexpr std::string_view unreadable = "advanced.proc-mode";
    const CompleteHost host;
    for (const Property& property : AllProperties()) {
        const bool isReported = property.offer != nullptr && property.name != unreadable;
        const Offer offer = Offered(property, host.Device());
        EXPECT_EQ(!std::holds_alternative<std::monostate>(offer), isReported) << property.name;
        EXPECT_EQ(property.range.empty(), property.offer == nullptr) << property.name;
    }
}

TEST(EveryProperty, IsCheckedAndSetAndReportedAsItWasSet) {
    int set = 0;
    for (const Property& property : AllProperties()) {
        if (property.Access() == Access::ReadWrite) {
            HostFor host(property);
            const Value value = AnotherValue(property, host.Device());
            const Checked checked = Check(property, host.Device(), FormatValue(property.type, value));
            ASSERT_TRUE(std::holds_alternative<Value>(checked))
                << property.name << ": " << std::get<Refusal>(checked).text;
            EXPECT_EQ(std::get<Value>(checked), value) << property.name;
            EXPECT_NE(host.BlockSentBy([&] { Set(property, host.Device(), value); }), "") << property.name;
            EXPECT_EQ(Confirms(Read(property, host.Device()), value), Confirmation::Yes) << property.name;
            ++set;
        }
    }
    EXPECT_GT(set, 100);
}

TEST(EveryProperty, IsSentIfItIsACommand) {
    CompleteHost host;
    for (const Property& property : AllProperties()) {
        if (property.Access() == Access::Command) {
            const Value value = AcceptedValues(property, host.Device()).front();
            EXPECT_NE(host.BlockSentBy([&] { Set(property, host.Device(), value); }), "") << property.name;
        }
    }
}

TEST(EveryProperty, ThatCanBeSetIsInTheSetThatNotifiesOfItsChanges) {
    for (const Property& property : AllProperties()) {
        if (property.Access() == Access::ReadWrite) {
            HostFor host(property);
            NotifiedSets notified(host.Device());
            const Value before = Read(property, host.Device()).value();
            const Value other = AnotherValue(property, host.Device());
            const std::string change = host.BlockSentBy([&] { Set(property, host.Device(), other); });
            host.BlockSentBy([&] { Set(property, host.Device(), before); });
            notified.Take();
            host.DeviceSends(change);
            EXPECT_EQ(notified.Take(), std::set{property.set}) << property.name << ": " << change;
        }
    }
}

// What a device reports of each property that cannot be set, other than in its first report.
const std::map<std::string, std::string> reportsOfReadings = {
    {"device.name", "MORQUIL DEVICE:\nModel name: Another\n\n"},
    {"device.software-version", "MORQUIL DEVICE:\nSoftware Version: 0x2\n\n"},
    {"device.fpga-version", "MORQUIL DEVICE:\nFPGA Version: 0x3\n\n"},
    {"device.remote-lock", "MORQUIL DEVICE:\nRemote lock: true\n\n"},
    {"network.dhcp", "NETWORK CONFIG:\nDHCP enabled: %b\n\n"},
    {"network.address", "NETWORK CONFIG:\nIP address: 1\n\n"},
    {"network.gateway", "NETWORK CONFIG:\nGateway: 2\n\n"},
    {"network.subnet", "NETWORK CONFIG:\nSubnet: 3\n\n"},
    {"input.signal-present", "VIDEO INPUT:\nSignal present: false\n\n"},
    {"input.pixel-format", "VIDEO INPUT:\nVideo pixel format: RGB444\n\n"},
    {"input.timecode-present", "VIDEO INPUT:\nTimecode present: None\n\n"},
    {"input.closed-caption-present", "VIDEO INPUT:\nClosed captioning present: %b\n\n"},
    {"input.optical-module-present", "VIDEO INPUT:\nOptical module present: false\n\n"},
    {"input.pcie-mode", "VIDEO INPUT:\nPCIe mode: %b\n\n"},
    {"output.still-frame-present", "VIDEO OUTPUT:\nStill frame present: %b\n\n"},
    {"output.still-frame-load-complete", "VIDEO OUTPUT:\nStill load complete: %b\n\n"},
    {"output.still-frame-store-complete", "VIDEO OUTPUT:\nStill store complete: %b\n\n"},
    {"output.still-frame-preview-complete", "VIDEO OUTPUT:\nStill preview complete: %b\n\n"},
    {"reference.signal-locked", "GENLOCK:\nSignal locked: %b\n\n"},
    {"noise-reduction.available", "NOISE REDUCTION AVAILABILITY:\nNoise reduction available: %b\n\n"},
    {"test-pattern.motion-available", "TEST PATTERN AVAILABILITY:\nMotion: %b\n\n"},
    {"advanced.frc-aperture-available", "VIDEO ADVANCED AVAILABILITY:\nFRC aperture available: %b\n\n"},
    {"aspect.last-input-width", "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio last input width: 1\n\n"},
    {"aspect.last-input-height", "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio last input height: 2\n\n"},
    {"aspect.last-output-width", "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio last output width: 3\n\n"},
    {"aspect.last-output-height", "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio last output height: 4\n\n"},
};

// Part of the version of the protocol, which a device reports once.
constexpr std::string_view neverReportedAgain = "device.network-update";

std::string ReportOf(const Property& property, const morquil::Device& device) {
    std::string report = reportsOfReadings.at(property.name);
    const std::size_t mark = report.find('%');
    return mark == std::string::npos
               ? report
               : report.replace(mark, 2, FormatValue(property.type, AnotherValue(property, device)));
}

TEST(EveryProperty, ThatCannotBeSetIsInTheSetThatNotifiesOfItsChanges) {
    std::size_t reported = 0;
    for (const Property& property : AllProperties()) {
        if (property.Access() == Access::Read && property.name != neverReportedAgain) {
            CompleteHost host;
            NotifiedSets notified(host.Device());
            const std::optional<Value> before = Read(property, host.Device());
            host.DeviceSends(ReportOf(property, host.Device()));
            EXPECT_NE(Read(property, host.Device()), before) << property.name;
            EXPECT_EQ(notified.Take(), std::set{property.set}) << property.name;
            ++reported;
        }
    }
    EXPECT_EQ(reported, reportsOfReadings.size());
}

}  // namespace
}  // namespace Morquil::Testing
