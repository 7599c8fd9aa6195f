#include "features/reference.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Reference = CMorquilReference;
class ReferenceFeature : public FeatureTest<Reference> {
protected:
    // A range getter's answer: the result, then what was written over 77 and 78.
    struct Answer {
        HRESULT result;
        int min = 77;
        int max = 78;
        bool operator==(const Answer&) const = default;
    };
    using Getter = HRESULT (STDMETHODCALLTYPE Reference::*)(_MorquilAPIVideoMode, int*, int*);

    Answer Ask(Getter getter, int mode) {
        Answer answer{};
        answer.result = (feature.*getter)(static_cast<_MorquilAPIVideoMode>(mode), &answer.min, &answer.max);
        return answer;
    }
};
constexpr int mode = morquilAPIVideoMode720p50;

TEST_F(ReferenceFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetType(morquilAPIVideoReferenceTypeExternal), "Type: External\n");
    ExpectSent(feature.SetGenRef(morquilAPIGenReferenceTriLevel), "Gen reference: TriLevel\n");
    ExpectSent(feature.SetLineOffset(-5), "Line offset: -5\n");
    ExpectSent(feature.SetPixelOffset(6), "Pixel offset: 6\n");
}

TEST_F(ReferenceFeature, RefusesWordsBeyondTheTables) {
    ExpectBounded(&Reference::SetType, 3);
    ExpectBounded(&Reference::SetGenRef, 2);
}

TEST_F(ReferenceFeature, AnswersFromTheReport) {
    ExpectGets(&Reference::GetType, morquilAPIVideoReferenceTypeInput, "Type: Input\n");
    ExpectGets(&Reference::GetGenRef, morquilAPIGenReferenceBlackburst, "Gen reference: Blackburst\n");
    ExpectGets(&Reference::GetLineOffset, -5, "Line offset: -5\n");
    ExpectGets(&Reference::GetPixelOffset, 6, "Pixel offset: 6\n");
    ExpectGets(&Reference::GetSignalLocked, 1, "Signal locked: true\n");
}

TEST_F(ReferenceFeature, WritesTheGenReferenceFlagAndStillFails) {
    for (const bool reported : {false, true}) {
        for (int value = -1; value < 2; ++value) {
            LONG isAvailable = 2;
            EXPECT_EQ(feature.IsGenRefAvailable(static_cast<_MorquilAPIGenReference>(value), &isAvailable), E_FAIL);
            EXPECT_EQ(isAvailable, reported && value == 1 ? 1 : 0) << value;
        }
        ReportAvailability("Gen references: TriLevel\n");
    }
}

TEST_F(ReferenceFeature, ReadsTheGenReferenceFlagFromTheListOfWords) {
    ReportAvailability("Gen references: TriLevel\nGen references available: true false\n");
    LONG isAvailable = 2;
    EXPECT_EQ(feature.IsGenRefAvailable(morquilAPIGenReferenceBlackburst, &isAvailable), E_FAIL);
    EXPECT_EQ(isAvailable, 0);
}

TEST_F(ReferenceFeature, RefusesAnInvalidGenReference) {
    LONG isAvailable = 2;
    EXPECT_EQ(feature.IsGenRefAvailable(static_cast<_MorquilAPIGenReference>(2), &isAvailable), E_INVALIDARG);
    EXPECT_EQ(feature.IsGenRefAvailable(static_cast<_MorquilAPIGenReference>(2), nullptr), E_INVALIDARG);
    EXPECT_EQ(feature.IsGenRefAvailable(morquilAPIGenReferenceTriLevel, nullptr), E_POINTER);
    EXPECT_EQ(isAvailable, 2);
}

TEST_F(ReferenceFeature, AnswersTheOffsetRangesOfAMode) {
    ReportAvailability(
        "Video mode: 720p50\nLine offset range: -1 1\nPixel offset range: -2 2\n"
        "Video mode: 2160p50\nLine offset range: -3 3\nPixel offset range: -4 4\n");
    EXPECT_EQ(Ask(&Reference::GetLineOffsetRange, mode), (Answer{S_OK, -1, 1}));
    EXPECT_EQ(Ask(&Reference::GetPixelOffsetRange, mode), (Answer{S_OK, -2, 2}));
    EXPECT_EQ(Ask(&Reference::GetLineOffsetRange, 33), (Answer{S_OK, -3, 3}));
    EXPECT_EQ(Ask(&Reference::GetPixelOffsetRange, 33), (Answer{S_OK, -4, 4}));
    EXPECT_EQ(Ask(&Reference::GetLineOffsetRange, 0), Answer{E_FAIL});
}

TEST_F(ReferenceFeature, FailsForAnInvalidMode) {
    ReportAvailability("Video mode: 2160p50\nLine offset range: -3 3\nPixel offset range: -4 4\n");
    for (const int none : {-1, INT_MIN, 34, INT_MAX}) {
        EXPECT_EQ(Ask(&Reference::GetLineOffsetRange, none), Answer{E_FAIL}) << none;
        EXPECT_EQ(Ask(&Reference::GetPixelOffsetRange, none), Answer{E_FAIL}) << none;
    }
}

TEST_F(ReferenceFeature, ChecksPointersBeforeTheMode) {
    int limit = 0;
    for (const Getter getter : {&Reference::GetLineOffsetRange, &Reference::GetPixelOffsetRange}) {
        EXPECT_EQ((feature.*getter)(static_cast<_MorquilAPIVideoMode>(34), nullptr, &limit), E_POINTER);
        EXPECT_EQ((feature.*getter)(static_cast<_MorquilAPIVideoMode>(34), &limit, nullptr), E_POINTER);
    }
}

TEST_F(ReferenceFeature, FailsForAPixelOffsetRangeWithoutALineOffsetRange) {
    ReportAvailability("Video mode: 720p50\nPixel offset range: -2 2\n");
    EXPECT_EQ(Ask(&Reference::GetPixelOffsetRange, mode), Answer{E_FAIL});
}

TEST_F(ReferenceFeature, AnswersZeroForAPixelOffsetRangeThatIsMissing) {
    ReportAvailability("Video mode: 720p50\nLine offset range: -1 1\n");
    EXPECT_EQ(Ask(&Reference::GetPixelOffsetRange, mode), (Answer{S_OK, 0, 0}));
}

}  // namespace
}  // namespace Morquil::Testing
