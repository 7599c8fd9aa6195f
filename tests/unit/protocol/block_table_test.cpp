#include "protocol/block_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "protocol/blocks/all.h"

namespace Morquil {
namespace {

/// The numbers from 1 on, as many as there are in `places`, which is every one of them once when the two are equal.
std::vector<std::size_t> FromOne(const std::vector<std::size_t>& places) {
    std::vector<std::size_t> numbers(places.size());
    std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

TEST(BlockTable, AssignsEverySlotToOneBlock) {
    std::vector<std::size_t> slots;
    ForEachBlock([&]<class Description>() {
        if (factsOf<Description>.slot != 0) {
            slots.push_back(factsOf<Description>.slot);
        }
    });
    std::sort(slots.begin(), slots.end());
    EXPECT_EQ(slots, FromOne(slots));
}

TEST(BlockTable, AssignsEveryPlaceInASettingsFileToOneBlock) {
    std::vector<std::size_t> places;
    for (const std::size_t block : savedBlocks) {
        places.push_back(factsByPlace[block].savedPlace);
    }
    EXPECT_EQ(places, FromOne(places));
    EXPECT_EQ(places.size(), 14U);
}

TEST(BlockTable, PlaysBackOnlyWhatASettingsFileHolds) {
    std::string playedBack;
    ForEachBlock([&]<class Description>() {
        EXPECT_TRUE(!factsOf<Description>.isPlayedBack || factsOf<Description>.savedPlace != 0);
        playedBack += factsOf<Description>.isPlayedBack ? std::string(Description::block.header.name) + "\n" : "";
    });
    EXPECT_EQ(
        playedBack,
        "MORQUIL DEVICE\nVIDEO OUTPUT\nVIDEO PROC AMP\nVIDEO ADJUST\nNOISE REDUCTION\nTEST PATTERN\nVIDEO ADVANCED\n"
        "ANCILLARY DATA\nGENLOCK\nVARIABLE ASPECT RATIO\nALIGN\nAUDIO\nMODE3D\n");
}

/// A block of the kinds of facts that keys can have.
struct FactsChangeSet {
    Field<bool> hasSignal;
    Field<std::int32_t> mode;
    Field<std::int32_t> level;
    Field<std::int32_t> serialNumber;

    static constexpr Block block{BlockHeader{.name = "FACTS", .unknownKeyText = "%s"},
                                 Key{"Signal", &FactsChangeSet::hasSignal, YesNo{}}.Needed().Observed(),
                                 Key{"Mode", &FactsChangeSet::mode, Signed{}}.NeededWhile(&FactsChangeSet::hasSignal),
                                 Key{"Level", &FactsChangeSet::level, Signed{}}.LimitedBy(FixedLimit{1, 2}).Needed(),
                                 Key{"Serial", &FactsChangeSet::serialNumber, Signed{}}.NotSaved()};
};

FactsChangeSet WithSignal(bool hasSignal) {
    FactsChangeSet set;
    set.hasSignal.Set(hasSignal);
    set.level.Set(1);
    return set;
}

TEST(KeyFacts, NameWhatABlockNeedsToBeComplete) {
    EXPECT_FALSE(HasAllNeeded(FactsChangeSet()));
    EXPECT_TRUE(HasAllNeeded(WithSignal(false)));
    FactsChangeSet lacksLevel = WithSignal(false);
    lacksLevel.level.Clear();
    EXPECT_FALSE(HasAllNeeded(lacksLevel));
}

TEST(KeyFacts, NeedSomeKeysOnlyWhileAnotherIsTrue) {
    FactsChangeSet set = WithSignal(true);
    EXPECT_FALSE(HasAllNeeded(set));
    set.mode.Set(3);
    EXPECT_TRUE(HasAllNeeded(set));
}

TEST(KeyFacts, TakeOutWhatASettingsFileDoesNotHold) {
    FactsChangeSet set = WithSignal(true);
    set.serialNumber.Set(7);
    ClearUnsaved(set);
    EXPECT_FALSE(set.serialNumber.IsPresent());
    EXPECT_TRUE(set.level.IsPresent());
}

TEST(KeyFacts, KeepEachOtherInAnyOrder) {
    ForEachKey<FactsChangeSet>([](const auto& key) {
        if (std::string_view(key.name) == "Signal") {
            EXPECT_TRUE(key.facts.isNeeded);
            EXPECT_EQ(key.facts.use, KeyUse::Observed);
        }
    });
}

}  // namespace
}  // namespace Morquil
