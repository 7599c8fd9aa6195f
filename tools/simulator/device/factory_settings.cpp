#include "simulator/device/factory_settings.h"

namespace Morquil::Simulator {

std::string_view FactorySettings() {
    // Blocks in the order in which a device sends them. Addresses are whole numbers: 192.168.10.60 is 3232238140.
    return R"(MORQUIL DEVICE:
Panel lock: false

VIDEO INPUT:
Auto detection enabled: true
Auto detection prefer PsF: false
Video source: SDI1
Video mode: 1080i50
Audio source: Embedded
Signal present: true
Timecode present: Detected
Closed captioning present: None
Wide SD aspect: false
HDMI 3D Full: false
Optical module present: true
Video pixel format: YCbCr422
PCIe mode: None

VIDEO OUTPUT:
Video mode: 1080i50
Aspect ratio: Anamorphic
Video demux mode: SingleLink
Output sdi mode: LevelA
Quad sdi output: QuadLink
Quad ancillary replication: false
Video pixel format: YCbCr422
Analog output: Component
Output option: Input
Transition setting: 10
Still frame present: false
Still load complete: false
Still store complete: false
Still preview complete: false
HDMI output: YCbCr422

VIDEO PROC AMP:
Gain: 0
Black: 0
Saturation: 0
Hue: 0
RY: 0
BY: 0
Sharp: 0

VIDEO ADJUST:
Red: 0
Green: 0
Blue: 0
Luma low: 4
Luma high: 1019
Chroma low: 4
Chroma high: 1019
Aspect fill luma: 64
Aspect fill Cb: 512
Aspect fill Cr: 512

NOISE REDUCTION:
Enabled: false
Bias: 0
Split screen: false
Red overlay: false

TEST PATTERN:
Output: None
No signal: Black
Test tone: None
Motion: false
Horizontal Rate: 0
Vertical Rate: 0

VIDEO ADVANCED:
Clean cadence: false
Scenecut detect: true
AntiAlias: true
RP177: false
Source type: Auto
FRC aperture: 1
Processing: Highest Quality

ANCILLARY DATA:
Timecode mode: Input
Timecode input line: 9
Timecode output line: 9
Timecode drop frame mode: Auto
Timecode source: VITC
Timecode loss mode: Continue
Timecode generate value: 10:00:00;00
Timecode jam sync value: 00:00:00;00
Timecode start source: User
Index reaction: Off
AFD insert type: Off
AFD output line: 11
CC enabled: true
CC input line: 9
CC output line: 9
CC service2 source: CC3
CC service1 language: English
CC service2 language: Spanish
Ancillary Data last input height: 1080

GENLOCK:
Type: Input
Gen reference: Blackburst
Line offset: 0
Pixel offset: 0
Signal locked: true

VARIABLE ASPECT RATIO:
Variable Aspect Ratio size X left: 1.0
Variable Aspect Ratio size X right: 1.0
Variable Aspect Ratio size Y left: 1.0
Variable Aspect Ratio size Y right: 1.0
Variable Aspect Ratio pos X left: 0.0
Variable Aspect Ratio pos X right: 0.0
Variable Aspect Ratio pos Y left: 0.0
Variable Aspect Ratio pos Y right: 0.0
Variable Aspect Ratio trim X left: 0
Variable Aspect Ratio trim X right: 0
Variable Aspect Ratio trim Y left: 0
Variable Aspect Ratio trim Y right: 0
Variable Aspect Ratio zoom/crop: false
Variable Aspect Ratio last input width: 1920
Variable Aspect Ratio last input height: 1080
Variable Aspect Ratio last output width: 1920
Variable Aspect Ratio last output height: 1080

ALIGN:
Align size X left: 1.0
Align size X right: 1.0
Align size Y left: 1.0
Align size Y right: 1.0
Align pos X left: 0.0
Align pos X right: 0.0
Align pos Y left: 0.0
Align pos Y right: 0.0
Align trim X left: 0
Align trim X right: 0
Align trim Y left: 0
Align trim Y right: 0
Align last input width: 1920
Align last input height: 1080
Align last output width: 1920
Align last output height: 1080

MODE3D:
3D mode: 3DModeOff
2D3D intensity: 50
2D3D depth: 0
3D roll left: 0
3D roll right: 0
3D tilt left: 0
3D tilt right: 0
3D toeIn left: 0
3D toeIn right: 0
3D flip left: Off
3D flip right: Off
3D output: 3DFullFrame
3D input: 3DFullFrame

NETWORK CONFIG:
Friendly name: Rack 1
DHCP enabled: false
IP address: 3232238140
Gateway: 3232238081
Subnet: 4294967040

DEVICE FILENAMES:
Still frame name: still-1

PRESET:
PresetName0: News studio
PresetName1: Sports van
PresetName2: Archive SD
PresetName3: Cinema 24
PresetName4: Spare 5
PresetName5: Spare 6

)";
}

std::string_view FactoryOffers() {
    return R"(VIDEO INPUT AVAILABILITY:
Video sources: SDI1 HDMI Component Composite SVideo Optical SDI2
Audio sources: Embedded AES RCA DB25
Video pixel formats: YCbCr422 YCbCr444 RGB444

VIDEO OUTPUT AVAILABILITY:
Video demux modes: SingleLink DualLink QuadLink
Video pixel formats: YCbCr422 YCbCr444 RGB444
Output sdi modes: LevelA LevelB
Quad sdi outputs: QuadLink QuadHDSplit
Video sources: Component Composite SVideo
Available output option: Input Black Still Freeze
HDMI outputs: YCbCr422 YCbCr444 RGB444
Transition setting range: 0 100

VIDEO PROC AMP AVAILABILITY:
Gain range: -60 60
Black range: -100 100
Saturation range: -100 100
Hue range: -180 180
RY range: -50 50
BY range: -50 50
Sharp range: -20 20

VIDEO ADJUST AVAILABILITY:
Red range: -50 50
Green range: -50 50
Blue range: -50 50
Luma low range: 4 500
Luma high range: 520 1019
Chroma low range: 4 500
Chroma high range: 520 1019
Aspect fill luma range: 64 940
Aspect fill Cb range: 64 960
Aspect fill Cr range: 64 960

NOISE REDUCTION AVAILABILITY:
Bias range: -10 10
Noise reduction available: true

TEST PATTERN AVAILABILITY:
Available test patterns: None SMPTEBars Bars Black Grid Multiburst
Available test tones: None Tone750Hz Tone1500Hz Tone3KHz Tone6KHz
Motion: true
Motion range: -8 8

VIDEO ADVANCED AVAILABILITY:
Available source types: Auto Video Film
FRC aperture range: 0 3
FRC aperture available: true

ANCILLARY DATA AVAILABILITY:
Timecode modes: Off Input InputRegen Generate JamSync
Timecode sources: VITC LTC
Timecode loss modes: Continue Stop
Timecode start sources: User Input
Timecode frame height: 486
Timecode line range: 10 20
Timecode frame height: 576
Timecode line range: 6 22
Timecode frame height: 720
Timecode line range: 8 25
Timecode frame height: 1080
Timecode line range: 8 20
Timecode frame height: 2160
Timecode line range: 8 20
Index reactions: Off On
AFD insert types: Off Auto Bypass 0000 0001 0010 0011 0100 0101 0110 0111 1000 1001 1010 1011 1100 1101 1110 1111
AFD output frame height: 486
AFD output line range: 12 19
AFD output frame height: 576
AFD output line range: 8 22
AFD output frame height: 720
AFD output line range: 9 25
AFD output frame height: 1080
AFD output line range: 9 20
AFD output frame height: 2160
AFD output line range: 9 41
CC input line range: 9 20
CC output line range: 9 20
CC service2 sources: CC2 CC3
CC service languages: English French German Italian Spanish

GENLOCK AVAILABILITY:
Types: Input Internal External
Gen references: Blackburst TriLevel
Gen references available: true true

VARIABLE ASPECT RATIO AVAILABILITY:
Variable Aspect Ratio size X range: 0.1 8.0
Variable Aspect Ratio size Y range: 0.1 8.0
Variable Aspect Ratio pos X range: -1.0 1.0
Variable Aspect Ratio pos Y range: -1.0 1.0
Variable Aspect Ratio trim X range: 0 960
Variable Aspect Ratio trim Y range: 0 540

ALIGN AVAILABILITY:
Align size X range: 0.5 2.0
Align size Y range: 0.5 2.0
Align pos X range: -0.5 0.5
Align pos Y range: -0.5 0.5
Align trim X range: 0 480
Align trim Y range: 0 270

AUDIO AVAILABILITY:
Audio level range: -60 12
Analog input ref level range: 0 24
Analog delay range: -100 1000
Audio selections: AudioIn1 AudioIn2 AudioIn3 AudioIn4 AudioIn5 AudioIn6 AudioIn7 AudioIn8
Audio selections: AudioIn9 AudioIn10 AudioIn11 AudioIn12 AudioIn13 AudioIn14 AudioIn15 AudioIn16
Audio selections: DolbyD1 DolbyD2 DolbyD3 DolbyD4 DolbyD5 DolbyD6 DolbyD7 DolbyD8 DolbyE1 DolbyE2
Audio selections: TT750 TT1500 TT3000 TT6000 TTMute

MODE3D AVAILABILITY:
2D3D intensity range: 0 100
2D3D depth range: -50 50
3D roll range: -10 10
3D tilt range: -10 10
3D toeIn range: -20 20

PRESET AVAILABILITY:
Preset range: 1 6

)";
}

AudioChangeSet FactoryAudio() {
    AudioChangeSet audio;
    for (std::size_t channel = 0; channel < AudioChangeSet::channels; ++channel) {
        audio.audioOut[channel].Set(static_cast<std::int32_t>(morquilAudSelIn1 + static_cast<std::int32_t>(channel)));
        audio.audioInLevel[channel].Set(0);
        audio.audioInPhase[channel].Set(false);
    }
    for (std::size_t pair = 0; pair < AudioChangeSet::pairs; ++pair) {
        audio.audioEncode[pair].Set(static_cast<std::int32_t>(morquilAudSelIn1 + static_cast<std::int32_t>(2 * pair)));
        audio.audioInPair[pair].Set(static_cast<std::int32_t>(morquilAudInSrcEmbedPair1) +
                                    static_cast<std::int32_t>(pair));
        audio.audioDDLevel[pair].Set(0);
        audio.audioDDPhase[pair].Set(false);
        audio.audioUserDelay[pair].Set(0);
    }
    audio.aesOutputSelect.Set(true);
    audio.analogInputRefLevel.Set(18);
    audio.metadataSource.Set(static_cast<std::int32_t>(DolbyMetadataSources::words.Find("PassThrough")));
    audio.metadataChannelMode.Set(static_cast<std::int32_t>(DolbyChannelModes::words.Find("Mode32")));
    audio.metadataDrcProfile.Set(static_cast<std::int32_t>(DolbyDrcProfiles::words.Find("FilmStd")));
    audio.metadataLfeSelect.Set(true);
    audio.metadataDialogLevel.Set(-27);
    audio.audioMeterChannels.Set(morquilAudMeterChannels_1_2);
    return audio;
}

}  // namespace Morquil::Simulator
