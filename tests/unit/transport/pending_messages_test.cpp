#include "transport/pending_messages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "protocol/blocks/all.h"
#include "tests/kit/threads.h"
#include "transport/reported_keys.h"

namespace Morquil {
namespace {

using Morquil::Testing::Threads;

template <class Message>
bool AddNew(PendingMessages& pending) {
    return pending.Add(std::make_unique<Message>());
}

std::string TakeText(PendingMessages& pending) {
    const auto message = pending.TakeNext();
    return message != nullptr ? TextOf(*message) : std::string();
}

/// One message of each block that has a slot and a message of its own, from the last of the table to the first.
void AddOneOfEach(PendingMessages& pending) {
    std::vector<void (*)(PendingMessages&)> adding;
    ForEachBlock([&]<class Description>() {
        if constexpr (factsOf<Description>.slot != 0 && std::is_same_v<Description, ChangeSetOf<Description>>) {
            adding.push_back([](PendingMessages& messages) {
                EXPECT_TRUE(AddNew<TextProtocolMessage<Description>>(messages)) << Description::block.header.name;
            });
        }
    });
    std::for_each(adding.rbegin(), adding.rend(), [&](const auto add) { add(pending); });
}

TEST(PendingMessages, ReturnNothingWhenNoneIsPending) {
    Receipts receipts{&IsReportedBack};
    PendingMessages pending{receipts};
    EXPECT_EQ(pending.TakeNext(), nullptr);
}

TEST(PendingMessages, HaveThirtyTwoSlots) {
    EXPECT_EQ(PendingMessages::slotCount, 32U);
}

TEST(PendingMessages, AreTakenInTheOrderOfTheTableWhateverTheOrderOfAdding) {
    Receipts receipts{&IsReportedBack};
    PendingMessages pending{receipts};
    AddOneOfEach(pending);
    for (const char* const block : {"MORQUIL DEVICE",
                                    "SUPPORTED CONVERSIONS",
                                    "VIDEO INPUT",
                                    "VIDEO INPUT AVAILABILITY",
                                    "VIDEO OUTPUT",
                                    "VIDEO OUTPUT AVAILABILITY",
                                    "VIDEO PROC AMP",
                                    "VIDEO PROC AMP AVAILABILITY",
                                    "VIDEO ADJUST",
                                    "VIDEO ADJUST AVAILABILITY",
                                    "NOISE REDUCTION",
                                    "NOISE REDUCTION AVAILABILITY",
                                    "TEST PATTERN",
                                    "TEST PATTERN AVAILABILITY",
                                    "VIDEO ADVANCED",
                                    "VIDEO ADVANCED AVAILABILITY",
                                    "ANCILLARY DATA",
                                    "ANCILLARY DATA AVAILABILITY",
                                    "GENLOCK",
                                    "GENLOCK AVAILABILITY",
                                    "VARIABLE ASPECT RATIO",
                                    "VARIABLE ASPECT RATIO AVAILABILITY",
                                    "AUDIO",
                                    "AUDIO AVAILABILITY",
                                    "MODE3D",
                                    "MODE3D AVAILABILITY",
                                    "NETWORK CONFIG",
                                    "DEVICE FILENAMES",
                                    "PRESET",
                                    "PRESET AVAILABILITY"}) {
        EXPECT_EQ(TakeText(pending), std::string(block) + ":\n\n");
    }
    EXPECT_EQ(pending.TakeNext(), nullptr);
}

TEST(PendingMessages, NeverReturnAnAlignMessage) {
    Receipts receipts{&IsReportedBack};
    PendingMessages pending{receipts};
    EXPECT_TRUE(AddNew<AlignMessage>(pending));
    EXPECT_EQ(pending.TakeNext(), nullptr);
    EXPECT_FALSE(AddNew<AlignMessage>(pending)) << "it is still pending, so the later one merges into it";
    EXPECT_EQ(pending.TakeNext(), nullptr);
}

TEST(PendingMessages, MergeAMessageIntoThePendingOneOfItsType) {
    Receipts receipts{&IsReportedBack};
    PendingMessages pending{receipts};
    auto first = std::make_unique<VideoProcAmpMessage>();
    first->gain.Set(1);
    first->black.Set(2);
    auto second = std::make_unique<VideoProcAmpMessage>();
    second->gain.Set(3);
    second->hue.Set(4);
    EXPECT_TRUE(pending.Add(std::move(first)));
    EXPECT_FALSE(pending.Add(std::move(second)));
    EXPECT_EQ(TakeText(pending), "VIDEO PROC AMP:\nGain: 3\nBlack: 2\nHue: 4\n\n");
    EXPECT_EQ(pending.TakeNext(), nullptr);
}

/// The later of two values that would count as equal in received blocks.
TEST(PendingMessages, SendTheLastOfNamesThatDifferOnlyInLetterCase) {
    Receipts receipts{&IsReportedBack};
    PendingMessages pending{receipts};
    for (const char* const name : {"studio", "Studio", "STUDIO"}) {
        auto config = std::make_unique<NetworkConfigMessage>();
        config->friendlyName.Set(name);
        pending.Add(std::move(config));
        auto preset = std::make_unique<PresetMessage>();
        preset->presetName[0].Set(name);
        pending.Add(std::move(preset));
    }
    EXPECT_EQ(TakeText(pending), "NETWORK CONFIG:\nFriendly name: STUDIO\n\n");
    EXPECT_EQ(TakeText(pending), "PRESET:\nPresetName0: STUDIO\n\n");
}

TEST(PendingMessages, SendTheLastOfNumbersThatCompareEqual) {
    Receipts receipts{&IsReportedBack};
    PendingMessages pending{receipts};
    for (const double size : {0.0, -0.0}) {
        auto message = std::make_unique<VariableAspectRatioMessage>();
        message->sizeXLeft.Set(size);
        pending.Add(std::move(message));
    }
    EXPECT_EQ(TakeText(pending), "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size X left: -0.000000\n\n");
}

TEST(PendingMessages, KeepAPendingResetBesideALaterValue) {
    Receipts receipts{&IsReportedBack};
    PendingMessages pending{receipts};
    auto reset = std::make_unique<VideoProcAmpMessage>();
    reset->reset.Set(true);
    auto value = std::make_unique<VideoProcAmpMessage>();
    value->gain.Set(3);
    pending.Add(std::move(reset));
    pending.Add(std::move(value));
    const std::string text = TakeText(pending);
    EXPECT_NE(text.find("Gain: 3\n"), std::string::npos) << text;
    EXPECT_NE(text.find("Reset"), std::string::npos) << text;
}

TEST(PendingMessages, KeepTypesApart) {
    Receipts receipts{&IsReportedBack};
    PendingMessages pending{receipts};
    EXPECT_TRUE(AddNew<GenlockMessage>(pending));
    EXPECT_TRUE(AddNew<GenlockAvailabilityMessage>(pending));
    EXPECT_EQ(TakeText(pending), "GENLOCK:\n\n");
    EXPECT_TRUE(AddNew<GenlockMessage>(pending)) << "the slot is empty again";
}

TEST(PendingMessages, LoseNothingThatSeveralThreadsAdd) {
    constexpr int threadCount = 4;
    constexpr int messagesEach = 500;
    Receipts receipts{&IsReportedBack};
    PendingMessages pending{receipts};
    {
        const Threads adding(threadCount, [&pending] {
            for (int count = 0; count < messagesEach; ++count) {
                auto message = std::make_unique<AudioMessage>();
                message->audioOut[static_cast<std::size_t>(count) % AudioChangeSet::channels].Set(morquilAudSelIn1);
                pending.Add(std::move(message));
                AddNew<PresetMessage>(pending);
            }
        });
    }
    const std::string audio = TakeText(pending);
    EXPECT_EQ(static_cast<std::size_t>(std::count(audio.begin(), audio.end(), '\n')), AudioChangeSet::channels + 2)
        << audio;
    EXPECT_EQ(TakeText(pending), "PRESET:\n\n");
    EXPECT_EQ(pending.TakeNext(), nullptr);
}

}  // namespace
}  // namespace Morquil
