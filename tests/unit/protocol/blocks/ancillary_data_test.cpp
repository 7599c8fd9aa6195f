#include "protocol/blocks/ancillary_data.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Ancillary = AncillaryDataChangeSet;

// clang-format off
const GoldenBlock<Ancillary> ancillary{"ANCILLARY DATA", {
    {"Timecode mode: JamSync",               &Ancillary::timecodeMode,          morquilAPITimecodeModeJamSync},
    {"Timecode input line: 9",               &Ancillary::timecodeInputLine,     9U},
    {"Timecode output line: 4294967295",     &Ancillary::timecodeOutputLine,    4294967295U},
    {"Timecode drop frame mode: NDF",        &Ancillary::timecodeDropFrameMode, morquilAPITimecodeDropFrameModeNDF},
    {"Timecode source: LTC",                 &Ancillary::timecodeSource,        morquilAPITimecodeSourceLTC},
    {"Timecode loss mode: Stop",             &Ancillary::timecodeLossMode,      morquilAPITimecodeLossModeStop},
    {"Timecode generate value: 01:02:03;04", &Ancillary::timecodeGenerateValue, 0x01020304U},
    {"Timecode jam sync value: 23:59:58;29", &Ancillary::timecodeJamSyncValue,  0x23595829U},
    {"Timecode start source: Input",         &Ancillary::timecodeStartSource,   morquilAPITimecodeStartSourceFromInput},
    {"Timecode start: true",                 &Ancillary::timecodeStart,         true},
    {"Index reaction: On",                   &Ancillary::indexReaction,         morquilAPIVideoIndexReactionAFD},
    {"AFD insert type: 1111",                &Ancillary::afdInsertType,         morquilAPIAFDInsertTypeF},
    {"AFD output line: 4294967294",          &Ancillary::afdOutputLine,         4294967294U},
    {"CC enabled: false",                    &Ancillary::ccEnabled,             false},
    {"CC input line: 4294967293",            &Ancillary::ccInputLine,           4294967293U},
    {"CC output line: 10",                   &Ancillary::ccOutputLine,          10U},
    {"CC service2 source: CC3",              &Ancillary::ccService2Source,      morquilAPICCServiceSourceCC3},
    {"CC service1 language: Spanish",        &Ancillary::ccService1Language,    morquilAPICCServiceLanguageSpanish},
    {"CC service2 language: French",         &Ancillary::ccService2Language,    morquilAPICCServiceLanguageFrench},
    {"Ancillary Data last input height: 576", &Ancillary::lastInputHeight,      576U},
    {"ResetValues: 7",                       &Ancillary::resetValues,           7U}}};
// clang-format on

TEST(AncillaryDataBlock, ReadsAndWritesEveryLine) {
    ancillary.ExpectReadsAndWritesEveryLine();
}

TEST(AncillaryDataBlock, WritesItsLinesInOrder) {
    ancillary.ExpectWritesItsLinesInOrder();
}

TEST(AncillaryDataBlock, ReportsBadWords) {
    for (const std::string key :
         {"Timecode mode", "Timecode drop frame mode", "Timecode source", "Timecode loss mode", "Timecode start source",
          "Index reaction", "AFD insert type", "CC service2 source", "CC service1 language", "CC service2 language"}) {
        ancillary.ExpectReports({{key + ": Perhaps", "Failed to parse " + key + " string \"Perhaps\"\n"}});
    }
}

TEST(AncillaryDataBlock, ReportsOtherBadValues) {
    for (const char* const key :
         {"Timecode input line", "Timecode output line", "Timecode start", "AFD output line", "CC enabled",
          "CC input line", "CC output line", "Ancillary Data last input height", "ResetValues"}) {
        ancillary.ExpectReports({NotAValue(key, "x")});
    }
}

TEST(AncillaryDataBlock, ReportsUnknownKeys) {
    ancillary.ExpectReports({{"Timecode: 00:00:00:00", "Unknown ancillary data line \"Timecode\"\n"},
                             {"Last input height: 1080", "Unknown ancillary data line \"Last input height\"\n"}});
}

TEST(AncillaryDataBlock, AlwaysWritesTheDropFrameSeparator) {
    EXPECT_EQ(WrittenBack<Ancillary>("ANCILLARY DATA", "Timecode generate value: 01:02:03:04"),
              "ANCILLARY DATA:\nTimecode generate value: 01:02:03;04\n\n");
}

TEST(AncillaryDataBlock, ReadsATimecodeWhateverItsSeparators) {
    EXPECT_EQ(WrittenBack<Ancillary>("ANCILLARY DATA", "Timecode jam sync value: 12x34y56z07 and more"),
              "ANCILLARY DATA:\nTimecode jam sync value: 12:34:56;07\n\n");
}

TEST(AncillaryDataBlock, IgnoresMalformedTimecodesSilently) {
    for (const std::string key : {"Timecode generate value", "Timecode jam sync value"}) {
        for (const char* const value : {"01:02:03:0", "01:02:03", "0a:02:03:04", "01:02:03:0x", "-1:02:03:04"}) {
            ancillary.ExpectIgnores(key + ": " + value);
        }
    }
}

TEST(AncillaryDataBlock, WritesItsLastTwoValuesInSignedNotation) {
    EXPECT_EQ(WrittenBack<Ancillary>("ANCILLARY DATA",
                                     "Ancillary Data last input height: 4294967295\nResetValues: 4294967295"),
              "ANCILLARY DATA:\nAncillary Data last input height: -1\nResetValues: -1\n\n");
}

TEST(AncillaryDataBlock, ReadsFourDigitsAsAnInsertTypeAndNotAsANumber) {
    ancillary.ExpectReports({{"AFD insert type: 0", "Failed to parse AFD insert type string \"0\"\n"}});
    EXPECT_EQ(WrittenBack<Ancillary>("ANCILLARY DATA", "AFD insert type: 0000"),
              "ANCILLARY DATA:\nAFD insert type: 0000\n\n");
}

}  // namespace
}  // namespace Morquil
