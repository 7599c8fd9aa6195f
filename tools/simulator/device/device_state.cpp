#include "simulator/device/device_state.h"

#include <utility>

#include "simulator/blocks/commands.h"
#include "simulator/blocks/device_text.h"
#include "simulator/blocks/observations.h"
#include "simulator/device/announcement.h"
#include "simulator/device/factory_device.h"
#include "simulator/device/settings_check.h"
#include "simulator/offers/mode_offers.h"

namespace Morquil::Simulator {

namespace {

/// Updates what follows from the modes of `device` before any of its settings is checked: an output mode to which the
/// input mode can be converted, the offers for these two modes, and the observations.
void FollowModes(DeviceBlocks& device) {
    auto& output = device.Of<VideoOutputChangeSet>().videoMode;
    if (!IsConvertible(device, OutputMode(device))) {
        output.Set(static_cast<std::int32_t>(NearestConvertible(device, OutputMode(device))));
    }
    OfferForModes(device);
    ObservePictureSizes(device);
}

void MergeSettings(DeviceBlocks& target, const DeviceBlocks& source) {
    ForEachBlock<BlockRole::Settings>(
        [&]<class Description>() { Merge(target.Of<Description>(), source.Of<Description>()); });
}

DeviceBlocks WithoutCommands(DeviceBlocks settings) {
    ForEachBlock<BlockRole::Settings>([&]<class Description>() { RemoveCommands(settings.Of<Description>()); });
    return settings;
}

/// The factory settings, which all devices share: a program may hold a thousand of them.
const DeviceBlocks& Factory() {
    static const DeviceBlocks factory = [] {
        DeviceBlocks device = FactoryDevice();
        FollowModes(device);
        SettleAll(device);
        return device;
    }();
    return factory;
}

DeviceBlocks AllResets(const DeviceBlocks& commands, const DeviceBlocks& factory) {
    DeviceBlocks settings;
    ForEachBlock<BlockRole::Settings>([&]<class Description>() {
        settings.Of<Description>() = ResetSettings(commands.Of<Description>(), factory.Of<Description>());
    });
    return settings;
}

}  // namespace

DeviceState::DeviceState(const DeviceIdentity& identity) : present_(Factory()), stills_(identity.stillFrameTime) {
    Identify(present_, identity);
}

ChangeOutcome DeviceState::Change(AnyBlock received, ChangeSource source) {
    DeviceBlocks changes;
    changes.Merge(received);
    if (source == ChangeSource::Host) {
        ForEachBlock<BlockRole::Settings>([&]<class Description>() { RemoveObservations(changes.Of<Description>()); });
    }
    const AnyBlock taken = changes.At(received.place);
    if (IsEmpty(taken)) {
        return {};
    }
    ChangeOutcome outcome = Change(changes);
    if (outcome.error.empty() && !HoldsNothing(taken)) {
        outcome.report.insert(0, DeviceText(taken));
    }
    return outcome;
}

ChangeOutcome DeviceState::Change(const DeviceBlocks& changes) {
    const DeviceBlocks settings = WithoutCommands(changes);
    DeviceBlocks consequences = AllResets(changes, Factory());
    const auto& stillAction = changes.Of<VideoOutputChangeSet>().stillFrameAction;
    StillStore stills = stills_;
    if (stillAction.IsPresent()) {
        Merge(consequences.Of<VideoOutputChangeSet>(), stills.Begin(stillAction.Get()));
    }
    const PresetChangeSet& preset = changes.Of<PresetChangeSet>();

    DeviceBlocks next = present_;
    if (preset.recall.IsPresent()) {
        presets_.Recall(preset.recall.Get(), Factory(), next);
    }
    MergeSettings(next, consequences);
    MergeSettings(next, settings);

    const DeviceBlocks before = present_;
    DeviceBlocks alreadyReported = before;
    MergeSettings(alreadyReported, settings);
    ChangeOutcome outcome = Adopt(next, changes, alreadyReported, consequences);
    if (outcome.error.empty()) {
        stills_ = stills;
        if (preset.save.IsPresent()) {
            presets_.Save(preset.save.Get(), before);
        }
    }
    return outcome;
}

ChangeOutcome DeviceState::Load(const DeviceBlocks& settings) {
    DeviceBlocks taken = WithoutCommands(settings);
    // Another device's settings change neither this device's identity nor its locks, so they cannot lock out its hosts.
    RemoveObservations(taken.Of<MorquilDeviceChangeSet>());
    DeviceBlocks next = present_;
    MergeSettings(next, taken);
    return Adopt(next, taken, present_, {});
}

ChangeOutcome DeviceState::Adopt(DeviceBlocks next, const DeviceBlocks& checked, const DeviceBlocks& alreadyReported,
                                 const DeviceBlocks& mentioned) {
    FollowModes(next);
    std::string error = FirstError(checked, next);
    if (!error.empty()) {
        return {std::move(error), {}};
    }
    SettleAll(next);
    std::string report = Announcement(alreadyReported, next, mentioned);
    present_ = next;
    return {{}, std::move(report)};
}

std::string DeviceState::Advance(std::chrono::milliseconds now) {
    DeviceBlocks flags;
    flags.Of<VideoOutputChangeSet>() = stills_.Advance(now);
    MergeSettings(present_, flags);
    return Announcement(present_, present_, flags);
}

std::string DeviceState::Greeting() const {
    std::string text = DeviceText<ProtocolPreambleChangeSet>(Of<ProtocolPreambleChangeSet>());
    for (std::size_t place = 0; place < blockCount; ++place) {
        if (factsByPlace[place].role == BlockRole::Settings) {
            text += DeviceText(present_.At(place));
        }
    }
    return text;
}

std::string DeviceState::CompleteDump() const {
    std::string text;
    for (std::size_t place = 0; place < blockCount; ++place) {
        text += DeviceText(present_.At(place));
    }
    return text;
}

}  // namespace Morquil::Simulator
