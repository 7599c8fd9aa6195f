#include "simulator/offers/limits.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "simulator/blocks/members.h"
#include "simulator/device/settings_check.h"
#include "simulator/device/settings_load.h"
#include "tests/unit/simulator/lone_host.h"

namespace Morquil::Simulator {
namespace {

/// The modes that the tests use: offers differ between them.
struct Modes {
    const char* input;
    const char* output;
};
constexpr Modes modes[] = {
    {"1080i50", "1080i50"}, {"625i50 PAL", "2160p50"}, {"2160p59.94", "525i59.94 NTSC"}, {"1080p24", "720p60"}};

template <class T>
T NextAbove(T value) {
    if constexpr (std::is_floating_point_v<T>) {
        return value + 0.001;
    } else {
        return value + 1;
    }
}
template <class T>
T NextBelow(T value) {
    if constexpr (std::is_floating_point_v<T>) {
        return value - 0.001;
    } else {
        return value - 1;
    }
}

/// Tries values of one setting on a device.
template <class Description, class Setting>
class Trial {
public:
    Trial(LoneHost& host, Setting setting) : host_(host), setting_(setting) {}

    template <class T>
    void ExpectTaken(const T& value) {
        const std::string block = BlockWith(value);
        EXPECT_TRUE(host_.Ask(block).starts_with("ACK\n\n" + DeviceBlockWith(value))) << block;
        ++trials;
    }
    template <class T>
    void ExpectRefused(const T& value) {
        const std::string block = BlockWith(value);
        if (block.find(": ") == std::string::npos) {
            return;  // it cannot be written
        }
        const std::string before = host_.device.CompleteDump();
        EXPECT_TRUE(host_.Ask(block).starts_with("NACK\n\n")) << block;
        EXPECT_EQ(host_.device.CompleteDump(), before) << block;
        ++trials;
    }

    int trials = 0;

private:
    template <class T>
    ChangeSetOf<Description> SetWith(const T& value) {
        ChangeSetOf<Description> set;
        bool done = false;
        ForEachPair(set.*setting_, set.*setting_, [&](auto& field, const auto& /*same*/) {
            if (!done) {
                field.Set(value);
                done = true;
            }
        });
        return set;
    }
    template <class T>
    std::string BlockWith(const T& value) {
        return BlockText<Description>(SetWith(value));
    }
    template <class T>
    std::string DeviceBlockWith(const T& value) {
        return DeviceText<Description>(SetWith(value));
    }

    LoneHost& host_;
    Setting setting_;
};

/// What is offered now, for each kind of offer.
template <class TrialType, class T>
void TryOffer(TrialType& trial, const Field<Range<T>>& offer, std::int32_t beyond) {
    const T highest = offer.Get().maximum + static_cast<T>(beyond);
    trial.ExpectTaken(offer.Get().minimum);
    trial.ExpectTaken(highest);
    trial.ExpectRefused(NextAbove(highest));
    if (std::is_signed_v<T> || offer.Get().minimum > T()) {
        trial.ExpectRefused(NextBelow(offer.Get().minimum));
    }
}
template <class TrialType, class Vocabulary>
void TryOffer(TrialType& trial, const SetField<Vocabulary>& offer, std::int32_t /*beyond*/) {
    for (std::size_t word = 0; word < Vocabulary::words.Size(); ++word) {
        const auto value = static_cast<std::int32_t>(word);
        offer.Has(word) ? trial.ExpectTaken(value) : trial.ExpectRefused(value);
    }
}
template <class TrialType, std::size_t count>
void TryOffer(TrialType& trial, const Field<std::array<bool, count>>& offer, std::int32_t /*beyond*/) {
    for (std::size_t word = 0; word < count; ++word) {
        const auto value = static_cast<std::int32_t>(word);
        offer.Get()[word] ? trial.ExpectTaken(value) : trial.ExpectRefused(value);
    }
}
template <class TrialType>
void TryOffer(TrialType& trial, const Field<bool>& offer, std::int32_t /*beyond*/) {
    trial.ExpectTaken(false);
    offer.Get() ? trial.ExpectTaken(true) : trial.ExpectRefused(true);
}

/// A device in the same state as the one that the host talks to.
DeviceState StateOf(LoneHost& host) {
    DeviceState state{DeviceIdentity{}};
    EXPECT_EQ(LoadSettings(state, host.device.CompleteDump()).error, "");
    return state;
}

/// Limits that no block offers have tests of their own.
template <class Description, class TrialType, class Limit>
void TryLimit(TrialType& trial, const DeviceState& state, const Limit& limit) {
    if constexpr (requires { limit.first; }) {
        TryLimit<Description>(trial, state, limit.first);
        TryLimit<Description>(trial, state, limit.second);
    } else if constexpr (requires { limit.slot; }) {
        const auto& offers = state.Of<typename OffersOf<Description>::Type>().*limit.offer;
        TryOffer(trial, offers[SlotNow(limit.slot, state.Blocks())], 0);
    } else if constexpr (requires { limit.offer; }) {
        TryOffer(trial, state.Of<typename OffersOf<Description>::Type>().*limit.offer, limit.beyond);
    }
}

template <class Description>
int TryLimits(LoneHost& host) {
    int trials = 0;
    ForEachLimitedKey<Description>([&](const auto& key) {
        Trial<Description, decltype(key.member)> trial(host, key.member);
        TryLimit<Description>(trial, StateOf(host), key.limit);
        trials += trial.trials;
    });
    return trials;
}

TEST(Limits, AcceptBothEndsOfEveryOfferedRangeAndEveryOfferedWordAndNothingBeyond) {
    for (const Modes& pair : modes) {
        SCOPED_TRACE(std::string(pair.input) + " to " + pair.output);
        LoneHost host;
        host.SetModes(pair.input, pair.output);
        int trials = 0;
        ForEachBlock<BlockRole::Settings>([&]<class Description>() {
            if constexpr (!std::is_same_v<Description, PresetChangeSet>) {
                trials += TryLimits<Description>(host);
            }
        });
        EXPECT_GT(trials, 350);
    }
}

TEST(Limits, AcceptEveryElementOfAnArrayWithinItsRangeOnly) {
    LoneHost host;
    for (std::size_t channel = 0; channel < AudioChangeSet::channels; ++channel) {
        const std::string key = "AudioInLevel" + std::to_string(channel);
        EXPECT_TRUE(host.Set("AUDIO", key + ": 12"));
        EXPECT_FALSE(host.Set("AUDIO", key + ": 13"));
        EXPECT_EQ(host.Value("AUDIO", key), "12");
    }
}

struct Line {
    const char* block;
    const char* line;
};

TEST(Limits, RefuseWhatNoVocabularyOrProtocolKnows) {
    const Line lines[] = {
        {"AUDIO", "AudioOut16: TTMute"},
        {"AUDIO", "AudioOut01: TTMute"},
        {"AUDIO", "AudioInPair0: EmbedPair9"},
        {"AUDIO", "AudioInLevel99999999999999999999: 1"},
        {"AUDIO", "Metadata dialog level: 0"},
        {"AUDIO", "Metadata dialog level: -32"},
        {"AUDIO", "Metadata program config: ProgCfg5_1"},
        {"AUDIO", "AudioInPhase3: maybe"},
        {"PRESET", "PresetName6: Late"},
        {"PRESET", "Save: 0"},
        {"PRESET", "Save: 8"},
        {"PRESET", "Recall: 9"},
        {"PRESET", "Recall: -1"},
        {"VIDEO OUTPUT", "Transition setting: -1"},
        {"VIDEO OUTPUT", "Transition setting: 2147483647"},
        {"VIDEO OUTPUT", "Still frame action: Burn"},
        {"VIDEO OUTPUT", "Video mode: 1080i51"},
        {"VIDEO PROC AMP", "Gain: 99999999999"},
        {"VIDEO ADJUST", "Luma low: -1"},
        {"ANCILLARY DATA", "Timecode generate value: 24:00:00:00"},
        {"ANCILLARY DATA", "Timecode generate value: 23:60:00:00"},
        {"ANCILLARY DATA", "Timecode generate value: 23:59:60:00"},
        {"ANCILLARY DATA", "Timecode jam sync value: 23:59:59:25"},
        {"ANCILLARY DATA", "Timecode jam sync value: soon"},
        {"ANCILLARY DATA", "Timecode start: now"},
        {"VARIABLE ASPECT RATIO", "Variable Aspect Ratio size X left: nan"},
        {"VARIABLE ASPECT RATIO", "Variable Aspect Ratio size X left: 1e300"},
        {"VARIABLE ASPECT RATIO", "Variable Aspect Ratio zoom/crop: 2"},
        {"GENLOCK", "Type: Sun"},
        {"NETWORK CONFIG", "DHCP enabled: perhaps"},
    };
    LoneHost host;
    const std::string before = host.device.CompleteDump();
    for (const Line& line : lines) {
        EXPECT_FALSE(host.Set(line.block, line.line)) << line.block << " " << line.line;
    }
    EXPECT_EQ(host.device.CompleteDump(), before);
}

TEST(Limits, ApplyNothingOfABlockWithARefusedLine) {
    LoneHost host;
    const std::string answer = host.Ask("VIDEO PROC AMP:\nGain: 12\nSharp: 21\nReset: true\n\n");
    EXPECT_EQ(answer, "NACK\n\nVIDEO PROC AMP:\nGain: 0\nBlack: 0\nSaturation: 0\nHue: 0\nRY: 0\nBY: 0\nSharp: 0\n\n");
}

TEST(Limits, CheckABlockAgainstTheModeThatItSets) {
    LoneHost host;
    EXPECT_FALSE(host.Set("VIDEO OUTPUT", "Video demux mode: QuadLink"));
    EXPECT_TRUE(host.Set("VIDEO OUTPUT", "Video mode: 2160p50\nVideo demux mode: QuadLink"));
    EXPECT_FALSE(host.Set("VIDEO OUTPUT", "Video mode: 1080i50\nVideo demux mode: QuadLink"));
    EXPECT_EQ(host.Value("VIDEO OUTPUT", "Video mode"), "2160p50");
}

TEST(Limits, RefuseAnOutputModeToWhichTheInputModeCannotBeConverted) {
    LoneHost host;
    EXPECT_FALSE(host.Set("VIDEO OUTPUT", "Video mode: 1080i60"));
    EXPECT_TRUE(host.Set("VIDEO OUTPUT", "Video mode: 720p50"));
}

TEST(Limits, AllowAspectRatiosOfTheConversionOnly) {
    LoneHost host;
    EXPECT_FALSE(host.Set("VIDEO OUTPUT", "Aspect ratio: LetterBox"));
    host.SetModes("625i50 PAL", "1080i50");
    EXPECT_TRUE(host.Set("VIDEO OUTPUT", "Aspect ratio: LetterBox"));
}

}  // namespace
}  // namespace Morquil::Simulator
