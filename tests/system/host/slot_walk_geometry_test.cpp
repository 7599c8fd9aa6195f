// Geometry, 3D, network, names and presets, slot by slot.
#include "tests/system/host/slot_walk.h"

namespace Morquil::Testing {
namespace {

// clang-format off

TEST_F(SlotWalk, VariableAspectRatio) {
    Walk({Iid::variableAspectRatio, "VARIABLE ASPECT RATIO", "vara", true});
    Sends(     3, "SetSizeX",            "Variable Aspect Ratio size X left: 1.500000\n", 1.5);
    Gets(      4, "GetSizeX",            "Variable Aspect Ratio size X left: 2.25\n", 2.25);
    GetsRange( 5, "GetSizeXRange",       "Variable Aspect Ratio size X range: 0.5 1.5\n", 0.5, 1.5);
    Sends(     6, "SetSizeY",            "Variable Aspect Ratio size Y left: -0.000001\n", -0.000001);
    Gets(      7, "GetSizeY",            "Variable Aspect Ratio size Y left: 3\n", 3.0);
    GetsRange( 8, "GetSizeYRange",       "Variable Aspect Ratio size Y range: 0.25 8\n", 0.25, 8.0);
    Sends(     9, "SetPositionX",        "Variable Aspect Ratio pos X left: 0.000000\n", 0.0);
    Gets(     10, "GetPositionX",        "Variable Aspect Ratio pos X left: -1.25\n", -1.25);
    GetsRange(11, "GetPositionXRange",   "Variable Aspect Ratio pos X range: -1 1\n", -1.0, 1.0);
    Sends(    12, "SetPositionY",        "Variable Aspect Ratio pos Y left: 123456789.125000\n", 123456789.125);
    Gets(     13, "GetPositionY",        "Variable Aspect Ratio pos Y left: 1e2\n", 100.0);
    GetsRange(14, "GetPositionYRange",   "Variable Aspect Ratio pos Y range: -2 2\n", -2.0, 2.0);
    Sends(    15, "SetTrimX",            "Variable Aspect Ratio trim X left: 960\n", 960U);
    Gets(     16, "GetTrimX",            "Variable Aspect Ratio trim X left: 1\n", 1U);
    GetsRange(17, "GetTrimXRange",       "Variable Aspect Ratio trim X range: 11 12\n", 11U, 12U);
    Sends(    18, "SetTrimY",            "Variable Aspect Ratio trim Y left: -1\n", 4294967295U);
    Gets(     19, "GetTrimY",            "Variable Aspect Ratio trim Y left: 4294967294\n", 4294967294U);
    GetsRange(20, "GetTrimYRange",       "Variable Aspect Ratio trim Y range: 21 4294967295\n", 21U, 4294967295U);
    GetsFlag( 22, "GetZoomCrop",         "Variable Aspect Ratio zoom/crop");
    SendsFlag(21, "SetZoomCrop",         "Variable Aspect Ratio zoom/crop");
    Gets(     23, "GetLastInputWidth",   "Variable Aspect Ratio last input width: 1920\n", 1920U);
    Gets(     24, "GetLastInputHeight",  "Variable Aspect Ratio last input height: 1080\n", 1080U);
    Gets(     25, "GetLastOutputWidth",  "Variable Aspect Ratio last output width: 720\n", 720U);
    Gets(     26, "GetLastOutputHeight", "Variable Aspect Ratio last output height: 576\n", 576U);
    Sends(    27, "ResetValues",         "ResetValues: 9\n", 9U);
    ExpectEverySlotUpTo(27);
}

TEST_F(SlotWalk, Mode3d) {
    Walk({Iid::mode3d, "MODE3D", "3dmo", true});
    SendsWord( 3, "SetMode",           "3D mode: 3DModeAlign\n", 4);
    Gets(      4, "GetMode",           "3D mode: 3DMode2Dto3D\n", 2);
    Sends(     5, "SetIntensity",      "2D3D intensity: -50\n", -50);
    Gets(      6, "GetIntensity",      "2D3D intensity: 50\n", 50);
    GetsRange( 7, "GetIntensityRange", "2D3D intensity range: 0 100\n", 0, 100);
    Sends(     8, "SetDepth",          "2D3D depth: 3\n", 3);
    Gets(      9, "GetDepth",          "2D3D depth: -3\n", -3);
    GetsRange(10, "GetDepthRange",     "2D3D depth range: -50 51\n", -50, 51);
    SendsWord(11, "SetInput3dType",    "3D input: 3DLineByLine\n", 4);
    Gets(     12, "GetInput3dType",    "3D input: 3DSideBySide\n", 1);
    SendsWord(13, "SetOutput3dType",   "3D output: 3DLineByLine\n", 4);
    Gets(     14, "GetOutput3dType",   "3D output: 3DTopBottom\n", 2);
    ExpectEverySlotUpTo(14);
}

// clang-format on

TEST_F(SlotWalk, GeometryNeverShowsTheRightSide) {
    Walk({Iid::variableAspectRatio, "VARIABLE ASPECT RATIO", "vara"});
    ExpectNotified("Variable Aspect Ratio size X right: 2\nVariable Aspect Ratio trim Y right: 3\n");

    double size = 9;
    std::uint32_t trim = 9;
    EXPECT_EQ(Call(4, &size), failed);
    EXPECT_EQ(Call(19, &trim), failed);
}

TEST_F(SlotWalk, GeometryRefusesNumbersThatDoNotFitIntoALine) {
    Walk({Iid::variableAspectRatio, "VARIABLE ASPECT RATIO", "vara"});

    Refuses(3, "SetSizeX", invalidArgument, 1e300);
    Refuses(12, "SetPositionY", invalidArgument, -1e300);
    Sends(3, "SetSizeX", "Variable Aspect Ratio size X left: 1.000000\n", 1.0);
}

class TextWalk : public SlotWalk {
protected:
    Result Set(int slot, const std::u16string& text) { return Call(slot, HostText(text).Get()); }
    void Sends(int slot, const std::u16string& text, const std::string& line) {
        EXPECT_EQ(Set(slot, text), ok);
        EXPECT_EQ(device.NextChange(), Block(line + "\n"));
    }
    void RefusesLineEnds(int slot) {
        for (const std::u16string bad : {u"a\nb", u"a\rb", u"\n", u"b\r"}) {
            EXPECT_EQ(Set(slot, bad), invalidArgument);
        }
        EXPECT_EQ(Set(slot, std::u16string(u"a\0b", 3)), invalidArgument);
        EXPECT_EQ(Call(slot, static_cast<char16_t*>(nullptr)), invalidArgument);
        ExpectNothingSent();
    }
};

TEST_F(TextWalk, NetworkConfig) {
    Walk({Iid::networkConfig, "NETWORK CONFIG", "ntwk"});
    GetsText(3, "GetFriendlyName",
             "Friendly name: Gr\xC3\xB6\xC3\x9F"
             "e 1: x\n",
             u"Gr\u00F6\u00DFe 1: x");
    Sends(4, u"Gr\u00F6\u00DFe \U0001F600",
          "Friendly name: Gr\xC3\xB6\xC3\x9F"
          "e \xF0\x9F\x98\x80");
    Sends(4, u"", "Friendly name: ");
    Sends(4, std::u16string(60, u'a'), "Friendly name: " + std::string(49, 'a'));
    RefusesLineEnds(4);
    GetsFlag(5, "GetDHCPEnabled", "DHCP enabled");
    Gets(6, "GetIPAddress", "IP address: 3232238140\n", 3232238140U);
    Gets(7, "GetGateway", "Gateway: 1\n", 1U);
    Gets(8, "GetSubnet", "Subnet: 4294967040\n", 4294967040U);
    ExpectNotNotified(
        "Friendly name: GR\xC3\xB6\xC3\x9F"
        "E 1: X\n");
    ExpectEverySlotUpTo(8);
}

TEST_F(TextWalk, DeviceFilenames) {
    Walk({Iid::deviceFilenames, "DEVICE FILENAMES", "fnam"});
    GetsText(3, "GetStillFrameName", "Still frame name: " + std::string(60, 'n') + "\n", std::u16string(49, u'n'));
    Sends(4, std::u16string(60, u's'), "Still frame name: " + std::string(50, 's'));
    std::string accents;
    for (int count = 0; count < 25; ++count) {
        accents += "\xC3\xA9";
    }
    Sends(4, std::u16string(30, u'\u00E9'), "Still frame name: " + accents);
    RefusesLineEnds(4);
    ExpectNotified("Still frame name: name\n");
    ExpectNotified("Still frame name: Name\n");
    ExpectEverySlotUpTo(4);
}

// clang-format off

TEST_F(TextWalk, Preset) {
    Walk({Iid::preset, "PRESET", "prst", true});
    SlotWalk::Sends(3, "SavePreset",     "Save: -5\n", -5);
    SlotWalk::Sends(4, "RecallPreset",   "Recall: 2147483647\n", INT_MAX);
    GetsRange(      5, "GetPresetRange", "Preset range: 1 8\n", 1, 8);
    for (const int preset : {1, 9}) {
        SlotWalk::Sends(3, "SavePreset", "Save: " + std::to_string(preset) + "\n", preset);
    }
    for (const int preset : {INT_MIN, 0, 10}) {
        Refuses(3, "SavePreset", invalidArgument, preset);
    }
    for (const int preset : {1, 10}) {
        SlotWalk::Sends(4, "RecallPreset", "Recall: " + std::to_string(preset) + "\n", preset);
    }
    for (const int preset : {-1, 0, 11, INT_MAX}) {
        Refuses(4, "RecallPreset", invalidArgument, preset);
    }
}

// clang-format on

TEST_F(TextWalk, PresetNamesAreThoseOfTheRangeLessOne) {
    Walk({Iid::preset, "PRESET", "prst", true});
    ReportAvailability("Preset range: 1 8\n");
    const auto none = static_cast<char16_t**>(nullptr);
    HostText name;

    EXPECT_EQ(Call(6, -1, none), invalidArgument);
    EXPECT_EQ(Call(6, 8, none), invalidArgument);
    EXPECT_EQ(Call(6, 0, none), nullPointer);
    EXPECT_EQ(Call(6, 0, name.Out()), failed);
    ExpectNotified("PresetName0: First\nPresetName5: \xE2\x82\xAC\n");
    EXPECT_EQ(Call(6, 0, name.Out()), ok);
    EXPECT_EQ(name.Text(), u"First");
    EXPECT_EQ(Call(6, 5, name.Out()), ok);
    EXPECT_EQ(name.Text(), u"\u20AC");
    EXPECT_EQ(Call(6, 7, name.Out()), failed);
    ExpectNotNotified("PresetName0: FIRST\n");
}

TEST_F(TextWalk, PresetNamesAreSentWithTheirSlot) {
    Walk({Iid::preset, "PRESET", "prst", true});
    const HostText longName(std::u16string(60, u'p'));
    const HostText badName(std::u16string(u"a\nb"));
    const auto none = static_cast<char16_t*>(nullptr);

    SlotWalk::Sends(7, "SetPresetName", "PresetName0: " + std::string(49, 'p') + "\n", 0, longName.Get());
    SlotWalk::Sends(7, "SetPresetName", "", 9, longName.Get());
    ReportAvailability("Preset range: 1 8\n");
    SlotWalk::Sends(7, "SetPresetName", "PresetName5: " + std::string(49, 'p') + "\n", 5, longName.Get());
    SlotWalk::Sends(7, "SetPresetName", "", 7, longName.Get());
    for (const int preset : {-1, 8}) {
        Refuses(7, "SetPresetName", invalidArgument, preset, longName.Get());
    }
    Refuses(7, "SetPresetName", invalidArgument, 0, none);
    Refuses(7, "SetPresetName", invalidArgument, 0, badName.Get());
}

}  // namespace
}  // namespace Morquil::Testing
