#include "features/closed_caption.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Captions = CMorquilClosedCaption;
class ClosedCaptionFeature : public FeatureTest<Captions> {};

TEST_F(ClosedCaptionFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetEnabled(1), "CC enabled: true\n");
    ExpectSent(feature.SetInputLine(21), "CC input line: 21\n");
    ExpectSent(feature.SetOutputLine(22), "CC output line: 22\n");
    ExpectSent(feature.SetService2Source(morquilAPICCServiceSourceCC3), "CC service2 source: CC3\n");
    ExpectSent(feature.SetService1Language(morquilAPICCServiceLanguageGerman), "CC service1 language: German\n");
    ExpectSent(feature.SetService2Language(morquilAPICCServiceLanguageSpanish), "CC service2 language: Spanish\n");
    ExpectSent(feature.ResetValues(4294967295U), "ResetValues: -1\n");
}

TEST_F(ClosedCaptionFeature, RefusesWordsBeyondTheTables) {
    ExpectBounded(&Captions::SetService2Source, 2);
    ExpectBounded(&Captions::SetService1Language, 5);
    ExpectBounded(&Captions::SetService2Language, 5);
}

TEST_F(ClosedCaptionFeature, AnswersFromTheReport) {
    ExpectGets(&Captions::GetEnabled, 1, "CC enabled: true\n");
    ExpectGets(&Captions::GetInputLine, 21, "CC input line: 21\n");
    ExpectGets(&Captions::GetOutputLine, 22, "CC output line: 22\n");
    ExpectGets(&Captions::GetService2Source, morquilAPICCServiceSourceCC2, "CC service2 source: CC2\n");
    ExpectGets(&Captions::GetService1Language, morquilAPICCServiceLanguageItalian, "CC service1 language: Italian\n");
    ExpectGets(&Captions::GetService2Language, morquilAPICCServiceLanguageEnglish, "CC service2 language: English\n");
    ExpectGetsRange(&Captions::GetInputLineRange, 1, 11, "CC input line range: 1 11\n");
    ExpectGetsRange(&Captions::GetOutputLineRange, 2, 12, "CC output line range: 2 12\n");
}

TEST_F(ClosedCaptionFeature, NotifiesOfItsOwnValuesOnly) {
    for (const char* const own :
         {"CC enabled: true\n", "CC input line: 1\n", "CC output line: 1\n", "CC service2 source: CC2\n",
          "CC service1 language: French\n", "CC service2 language: French\n"}) {
        EXPECT_TRUE(IsNotifiedOf(own)) << own;
    }
    EXPECT_FALSE(IsNotifiedOf(
        "Timecode mode: Input\nTimecode input line: 1\nTimecode output line: 1\nTimecode drop frame mode: DF\n"
        "Timecode source: LTC\nTimecode loss mode: Stop\nTimecode generate value: 00:00:00;01\n"
        "Timecode jam sync value: 00:00:00;01\nTimecode start source: Input\nTimecode start: true\n"
        "Index reaction: On\nAFD insert type: Auto\nAFD output line: 1\nAncillary Data last input height: 1080\n"
        "ResetValues: 1\n"));
}

TEST_F(ClosedCaptionFeature, NotifiesOfItsOwnAvailabilityOnly) {
    for (const char* const own : {"CC input line range: 1 2\n", "CC output line range: 1 2\n",
                                  "CC service2 sources: CC2\n", "CC service languages: French\n"}) {
        EXPECT_TRUE(IsNotifiedOfAvailability(own)) << own;
    }
    EXPECT_FALSE(IsNotifiedOfAvailability(
        "Timecode modes: Off\nOutput: 720p50\nTimecode drop frame modes: DF\nTimecode sources: LTC\n"
        "Timecode loss modes: Stop\nTimecode start sources: User\nTimecode frame height: 720\n"
        "Timecode line range: 1 2\nIndex reactions: On\nAFD insert types: Auto\nAFD output frame height: 720\n"
        "AFD output line range: 1 2\n"));
}

}  // namespace
}  // namespace Morquil::Testing
