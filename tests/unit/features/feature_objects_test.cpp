// The rules that every feature object follows, whatever its blocks are.
#include <gtest/gtest.h>

#include <string>

#include "tests/unit/features/feature_cases.h"
#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

template <class FeatureClass>
class FeatureObjects : public FeatureTest<FeatureClass> {
protected:
    static constexpr bool hasAvailability = featureCase<FeatureClass>.availabilityBlock != nullptr;

    void ReportWholeAvailability() {
        if constexpr (hasAvailability) {
            this->ReportAvailability(this->theCase.availability);
        }
    }
};

using FeatureClasses =
    testing::Types<CMorquilInputConfiguration, CMorquilOutputConfiguration, CMorquilVideoProcAmp,
                   CMorquilColorCorrection, CMorquilVideoClip, CMorquilAspectFill, CMorquilNoiseReduction,
                   CMorquilTestPattern, CMorquilVideoAdvanced, CMorquilTimecode, CMorquilClosedCaption,
                   CMorquilVideoIndex, CMorquilReference, CMorquilVariableAspectRatio, CMorquil3dMode, CMorquilAlign,
                   CMorquilAudioMapping, CMorquilNetworkConfig, CMorquilDeviceFilenames, CMorquilPreset>;
TYPED_TEST_SUITE(FeatureObjects, FeatureClasses);

TYPED_TEST(FeatureObjects, LeaveCountingAndQueriesToTheirOwner) {
    IUnknown* const unknown = this->feature.AsUnknown();
    void* answer = nullptr;
    EXPECT_EQ(unknown->AddRef(), 2U);
    EXPECT_EQ(unknown->AddRef(), 3U);
    EXPECT_EQ(unknown->Release(), 2U);
    EXPECT_EQ(unknown->QueryInterface(IID_IMorquilDevice, &answer), S_OK);
    EXPECT_EQ(answer, &this->owner);
    EXPECT_EQ(std::memcmp(&this->owner.askedFor, &IID_IMorquilDevice, sizeof(GUID)), 0);
}

TYPED_TEST(FeatureObjects, CarryTheirOwnPropertySetId) {
    EXPECT_EQ(this->feature.PropertySet(), this->theCase.id);
}

TYPED_TEST(FeatureObjects, NotifyTheirObserversOnceOfAReportThatChangesThem) {
    this->Report(this->theCase.settings);
    EXPECT_EQ(this->observer.TakeNotifications().size(), 1U);
    this->Report(this->theCase.change);
    EXPECT_EQ(this->observer.TakeNotifications(), std::vector<_MorquilPropertySetId>{this->theCase.id});
}

TYPED_TEST(FeatureObjects, AreSilentAboutAReportThatChangesNothing) {
    this->Report(this->theCase.settings);
    EXPECT_FALSE(this->IsNotifiedOf(this->theCase.settings));
    EXPECT_FALSE(this->IsNotifiedOf(""));
}

TYPED_TEST(FeatureObjects, ApplyAChangeWithoutNotification) {
    this->Report(this->theCase.settings);
    this->WasNotified();
    this->Report(this->theCase.change, false);
    EXPECT_FALSE(this->WasNotified());
    EXPECT_FALSE(this->IsNotifiedOf(this->theCase.change)) << "it was not applied";
}

TYPED_TEST(FeatureObjects, NotifyOfAChangedAvailabilityOnlyWhereThatIsTheRule) {
    if constexpr (TestFixture::hasAvailability) {
        const bool notifies = this->theCase.notifiesAvailability;
        EXPECT_EQ(this->IsNotifiedOfAvailability(this->theCase.availability), notifies);
        EXPECT_FALSE(this->IsNotifiedOfAvailability(this->theCase.availability));
        EXPECT_EQ(this->IsNotifiedOfAvailability(this->theCase.availabilityChange), notifies);
    }
}

TYPED_TEST(FeatureObjects, AreCompleteOnceEveryBlockHasBeenReported) {
    EXPECT_FALSE(this->feature.IsCacheComplete());
    this->Report(this->theCase.settings);
    EXPECT_EQ(this->feature.IsCacheComplete(), !this->hasAvailability);
    this->ReportWholeAvailability();
    EXPECT_TRUE(this->feature.IsCacheComplete());
}

TYPED_TEST(FeatureObjects, AreIncompleteWithoutTheirSettings) {
    this->ReportWholeAvailability();
    EXPECT_FALSE(this->feature.IsCacheComplete());
}

TYPED_TEST(FeatureObjects, ForgetEverythingWhenTheyAreCleared) {
    this->Report(this->theCase.settings);
    this->ReportWholeAvailability();
    this->feature.ClearCache();
    EXPECT_FALSE(this->feature.IsCacheComplete());
    EXPECT_EQ(this->feature.GetSettingsText(), this->BlockOf(this->theCase.block, ""));
    EXPECT_TRUE(this->IsNotifiedOf(this->theCase.settings));
    EXPECT_FALSE(this->hasAvailability && this->feature.IsCacheComplete());
}

TYPED_TEST(FeatureObjects, NotifyNoObserverThatTheyWereCleared) {
    this->Report(this->theCase.settings);
    this->WasNotified();
    this->feature.ClearCache();
    EXPECT_FALSE(this->WasNotified());
}

TYPED_TEST(FeatureObjects, ReturnTheirSettingsAsTheirBlock) {
    EXPECT_EQ(this->feature.GetSettingsText(), this->BlockOf(this->theCase.block, ""));
    this->Report(this->theCase.settings);
    this->ReportWholeAvailability();
    EXPECT_EQ(this->feature.GetSettingsText(), this->BlockOf(this->theCase.block, this->theCase.settings));
}

}  // namespace
}  // namespace Morquil::Testing
