// What the rules common to all feature objects need to know about each of them.
#pragma once

#include "MorquilAPI.h"
#include "features/align.h"
#include "features/aspect_fill.h"
#include "features/audio_mapping.h"
#include "features/closed_caption.h"
#include "features/color_correction.h"
#include "features/device_filenames.h"
#include "features/input_configuration.h"
#include "features/mode_3d.h"
#include "features/network_config.h"
#include "features/noise_reduction.h"
#include "features/output_configuration.h"
#include "features/preset.h"
#include "features/reference.h"
#include "features/test_pattern.h"
#include "features/timecode.h"
#include "features/variable_aspect_ratio.h"
#include "features/video_advanced.h"
#include "features/video_clip.h"
#include "features/video_index.h"
#include "features/video_proc_amp.h"

namespace Morquil::Testing {

struct FeatureCase {
    _MorquilPropertySetId id;
    /// Whether observers are notified of a changed availability.
    bool notifiesAvailability;
    const char* block;
    /// A whole report, in wire order, and a line of it with another value.
    const char* settings;
    const char* change;
    /// The same of the availability; null if there is none.
    const char* availabilityBlock = nullptr;
    const char* availability = nullptr;
    const char* availabilityChange = nullptr;
};

inline constexpr const char* videoAdjustSettings =
    "Red: -1\nGreen: 2\nBlue: 3\n"
    "Luma low: 16\nLuma high: 235\nChroma low: 17\nChroma high: -1\n"
    "Aspect fill luma: 64\nAspect fill Cb: 65\nAspect fill Cr: 66\nResetValues: -2147483648\n";
inline constexpr const char* videoAdjustAvailability =
    "Red range: -10 10\nGreen range: -20 20\nBlue range: -30 30\n"
    "Luma low range: 1 2\nLuma high range: 3 4\nChroma low range: 5 6\nChroma high range: 7 4294967295\n"
    "Aspect fill luma range: 8 9\nAspect fill Cb range: 10 11\nAspect fill Cr range: 12 13\n";

inline constexpr const char* ancillaryDataSettings =
    "Timecode mode: JamSync\nTimecode input line: 14\nTimecode output line: 15\nTimecode drop frame mode: NDF\n"
    "Timecode source: LTC\nTimecode loss mode: Stop\nTimecode generate value: 01:02:03;04\n"
    "Timecode jam sync value: 11:12:13;14\nTimecode start source: Input\nTimecode start: true\nIndex reaction: On\n"
    "AFD insert type: 1010\nAFD output line: 12\nCC enabled: true\nCC input line: 21\nCC output line: 22\n"
    "CC service2 source: CC3\nCC service1 language: French\nCC service2 language: Spanish\n"
    "Ancillary Data last input height: 1080\nResetValues: 5\n";
inline constexpr const char* ancillaryDataAvailability =
    "Timecode modes: Off Input\nOutput: 1080i50\nTimecode drop frame modes: DF\nTimecode sources: VITC\n"
    "Timecode loss modes: Stop\nTimecode start sources: User\nTimecode frame height: 486\nTimecode line range: 10 20\n"
    "Index reactions: On\nAFD insert types: Auto 1111\nAFD output frame height: 576\nAFD output line range: 11 21\n"
    "CC input line range: 12 22\nCC output line range: 13 23\nCC service2 sources: CC2\nCC service languages: German\n";

template <class FeatureClass>
inline constexpr FeatureCase featureCase{};

template <>
inline constexpr FeatureCase featureCase<CMorquilInputConfiguration>{
    .id = morquilInputConfigurationPropertySetId,
    .notifiesAvailability = true,
    .block = "VIDEO INPUT",
    .settings =
        "Auto detection enabled: true\nAuto detection prefer PsF: false\nVideo source: SDI1\n"
        "Video mode: 1080i50\nAudio source: AES\nSignal present: true\nTimecode present: Detected\n"
        "Closed captioning present: None\nWide SD aspect: false\nHDMI 3D Full: true\n"
        "Optical module present: false\nVideo pixel format: YCbCr444\nPCIe mode: Capture\n",
    .change = "Video source: HDMI\n",
    .availabilityBlock = "VIDEO INPUT AVAILABILITY",
    .availability = "Video sources: SDI1 HDMI\nAudio sources: Embedded\nVideo pixel formats: RGB444\n",
    .availabilityChange = "Audio sources: Embedded AES\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilOutputConfiguration>{
    .id = morquilOutputConfigurationPropertySetId,
    .notifiesAvailability = false,
    .block = "VIDEO OUTPUT",
    .settings =
        "Video mode: 1080p25\nAspect ratio: LetterBox\nVideo demux mode: DualLink\nOutput sdi mode: LevelB\n"
        "Quad sdi output: QuadHDSplit\nQuad ancillary replication: true\nVideo pixel format: RGB444\n"
        "Analog output: Composite\nOutput option: Still\nTransition setting: 3\nStill frame action: Preview\n"
        "Still frame present: true\nStill load complete: false\nStill store complete: true\n"
        "Still preview complete: false\nHDMI output: YCbCr422\n",
    .change = "Video mode: 1080p24\n",
    .availabilityBlock = "VIDEO OUTPUT AVAILABILITY",
    .availability =
        "Video demux modes: SingleLink\nVideo pixel formats: YCbCr422\nOutput sdi modes: LevelA\n"
        "Quad sdi outputs: QuadLink\nVideo sources: Component\nAvailable output option: Input Black\n"
        "HDMI outputs: RGB444\nTransition setting range: 0 9\n",
    .availabilityChange = "Transition setting range: 0 10\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilVideoProcAmp>{
    .id = morquilVideoProcAmpPropertySetId,
    .notifiesAvailability = false,
    .block = "VIDEO PROC AMP",
    .settings = "Gain: 1\nBlack: -2\nSaturation: 3\nHue: -4\nRY: 5\nBY: -6\nSharp: 7\nResetValues: -1\n",
    .change = "Hue: 4\n",
    .availabilityBlock = "VIDEO PROC AMP AVAILABILITY",
    .availability =
        "Gain range: -1 1\nBlack range: -2 2\nSaturation range: -3 3\nHue range: -4 4\nRY range: -5 5\n"
        "BY range: -6 6\nSharp range: -7 7\n",
    .availabilityChange = "Hue range: -4 5\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilColorCorrection>{.id = morquilColorCorrectionPropertySetId,
                                                                  .notifiesAvailability = false,
                                                                  .block = "VIDEO ADJUST",
                                                                  .settings = videoAdjustSettings,
                                                                  .change = "Green: 1\n",
                                                                  .availabilityBlock = "VIDEO ADJUST AVAILABILITY",
                                                                  .availability = videoAdjustAvailability,
                                                                  .availabilityChange = "Green range: 0 1\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilVideoClip>{.id = morquilVideoClipPropertySetId,
                                                            .notifiesAvailability = false,
                                                            .block = "VIDEO ADJUST",
                                                            .settings = videoAdjustSettings,
                                                            .change = "Luma high: 1\n",
                                                            .availabilityBlock = "VIDEO ADJUST AVAILABILITY",
                                                            .availability = videoAdjustAvailability,
                                                            .availabilityChange = "Luma high range: 0 1\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilAspectFill>{.id = morquilAspectFillPropertySetId,
                                                             .notifiesAvailability = false,
                                                             .block = "VIDEO ADJUST",
                                                             .settings = videoAdjustSettings,
                                                             .change = "Aspect fill Cr: 1\n",
                                                             .availabilityBlock = "VIDEO ADJUST AVAILABILITY",
                                                             .availability = videoAdjustAvailability,
                                                             .availabilityChange = "Aspect fill Cr range: 0 1\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilNoiseReduction>{
    .id = morquilNoiseReductionPropertySetId,
    .notifiesAvailability = true,
    .block = "NOISE REDUCTION",
    .settings = "Enabled: true\nBias: -3\nSplit screen: false\nRed overlay: true\n",
    .change = "Bias: 3\n",
    .availabilityBlock = "NOISE REDUCTION AVAILABILITY",
    .availability = "Bias range: -5 5\nNoise reduction available: true\n",
    .availabilityChange = "Bias range: -5 6\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilTestPattern>{
    .id = morquilTestPatternPropertySetId,
    .notifiesAvailability = true,
    .block = "TEST PATTERN",
    .settings =
        "Output: Bars\nNo signal: Black\nTest tone: Tone3KHz\nMotion: true\nHorizontal Rate: -2\n"
        "Vertical Rate: 3\n",
    .change = "Output: Grid\n",
    .availabilityBlock = "TEST PATTERN AVAILABILITY",
    .availability =
        "Available test patterns: None Bars\nAvailable test tones: None\nMotion: true\n"
        "Motion range: -8 8\n",
    .availabilityChange = "Motion: false\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilVideoAdvanced>{
    .id = morquilVideoAdvancedPropertySetId,
    .notifiesAvailability = true,
    .block = "VIDEO ADVANCED",
    .settings =
        "Clean cadence: true\nScenecut detect: false\nAntiAlias: true\nRP177: false\nSource type: Film\n"
        "FRC aperture: 3\nProcessing: Lowest Latency\n",
    .change = "Processing: Highest Quality\n",
    .availabilityBlock = "VIDEO ADVANCED AVAILABILITY",
    .availability = "Available source types: Auto Film\nFRC aperture range: 1 2\nFRC aperture available: true\n",
    .availabilityChange = "Available source types: Auto\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilTimecode>{.id = morquilTimecodePropertySetId,
                                                           .notifiesAvailability = true,
                                                           .block = "ANCILLARY DATA",
                                                           .settings = ancillaryDataSettings,
                                                           .change = "Timecode source: VITC\n",
                                                           .availabilityBlock = "ANCILLARY DATA AVAILABILITY",
                                                           .availability = ancillaryDataAvailability,
                                                           .availabilityChange = "Timecode modes: Off\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilClosedCaption>{.id = morquilClosedCaptionPropertySetId,
                                                                .notifiesAvailability = true,
                                                                .block = "ANCILLARY DATA",
                                                                .settings = ancillaryDataSettings,
                                                                .change = "CC enabled: false\n",
                                                                .availabilityBlock = "ANCILLARY DATA AVAILABILITY",
                                                                .availability = ancillaryDataAvailability,
                                                                .availabilityChange = "CC input line range: 1 2\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilVideoIndex>{.id = morquilVideoIndexPropertySetId,
                                                             .notifiesAvailability = true,
                                                             .block = "ANCILLARY DATA",
                                                             .settings = ancillaryDataSettings,
                                                             .change = "AFD output line: 1\n",
                                                             .availabilityBlock = "ANCILLARY DATA AVAILABILITY",
                                                             .availability = ancillaryDataAvailability,
                                                             .availabilityChange = "AFD insert types: Auto\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilReference>{
    .id = morquilReferencePropertySetId,
    .notifiesAvailability = true,
    .block = "GENLOCK",
    .settings = "Type: External\nGen reference: TriLevel\nLine offset: -5\nPixel offset: 6\nSignal locked: true\n",
    .change = "Signal locked: false\n",
    .availabilityBlock = "GENLOCK AVAILABILITY",
    .availability =
        "Types: Input Internal\nGen references: TriLevel\nGen references available: false true\n"
        "Video mode: 625i50 PAL\nLine offset range: -1 1\nPixel offset range: -2 2\n",
    .availabilityChange = "Video mode: 720p50\nLine offset range: -1 1\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilVariableAspectRatio>{
    .id = morquilVariableAspectRatioPropertySetId,
    .notifiesAvailability = true,
    .block = "VARIABLE ASPECT RATIO",
    .settings =
        "Variable Aspect Ratio size X left: 1.500000\nVariable Aspect Ratio size X right: 2.500000\n"
        "Variable Aspect Ratio size Y left: 3.500000\nVariable Aspect Ratio size Y right: 4.500000\n"
        "Variable Aspect Ratio pos X left: -1.250000\nVariable Aspect Ratio pos X right: -2.250000\n"
        "Variable Aspect Ratio pos Y left: -3.250000\nVariable Aspect Ratio pos Y right: -4.250000\n"
        "Variable Aspect Ratio trim X left: 1\nVariable Aspect Ratio trim X right: 2\n"
        "Variable Aspect Ratio trim Y left: 3\nVariable Aspect Ratio trim Y right: -1\n"
        "Variable Aspect Ratio zoom/crop: true\nVariable Aspect Ratio last input width: 1920\n"
        "Variable Aspect Ratio last input height: 1080\nVariable Aspect Ratio last output width: 1280\n"
        "Variable Aspect Ratio last output height: 720\nResetValues: 9\n",
    .change = "Variable Aspect Ratio pos Y left: 0.5\n",
    .availabilityBlock = "VARIABLE ASPECT RATIO AVAILABILITY",
    .availability = "Variable Aspect Ratio size X range: 0.5 1.5\nVariable Aspect Ratio trim Y range: 1 2\n",
    .availabilityChange = "Variable Aspect Ratio size X range: 0.5 1.6\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilAlign>{
    .id = morquilAlignPropertySetId,
    .notifiesAvailability = true,
    .block = "ALIGN",
    // A reset is only written here and never read, so it cannot be reported.
    .settings =
        "Align size X left: 1.500000\nAlign size X right: 2.500000\nAlign size Y left: 3.500000\n"
        "Align size Y right: 4.500000\nAlign pos X left: -1.250000\nAlign pos X right: -2.250000\n"
        "Align pos Y left: -3.250000\nAlign pos Y right: -4.250000\nAlign trim X left: 1\n"
        "Align trim X right: 2\nAlign trim Y left: 3\nAlign trim Y right: -1\n"
        "Align last input width: 1920\nAlign last input height: 1080\nAlign last output width: 1280\n"
        "Align last output height: 720\n",
    .change = "Align trim X right: 3\n",
    .availabilityBlock = "ALIGN AVAILABILITY",
    .availability = "Align size X range: 0.5 1.5\nAlign trim Y range: 1 2\n",
    .availabilityChange = "Align size X range: 0.5 1.6\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquil3dMode>{
    .id = morquil3dModePropertySetId,
    .notifiesAvailability = true,
    .block = "MODE3D",
    .settings =
        "3D mode: 3DModeAlign\n2D3D intensity: 1\n2D3D depth: -2\n3D roll left: 3\n3D roll right: 4\n"
        "3D tilt left: 5\n3D tilt right: 6\n3D toeIn left: 7\n3D toeIn right: 8\n3D flip left: Both\n"
        "3D flip right: Off\n3D output: 3DTopBottom\n3D input: 3DSideBySide\n",
    .change = "3D tilt left: 4\n",
    .availabilityBlock = "MODE3D AVAILABILITY",
    .availability = "2D3D intensity range: 0 10\nInput: 1080i50\nOutput: 1080i50 720p50\n",
    .availabilityChange = "Input: 1080i50\nOutput: 720p50\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilAudioMapping>{
    .id = morquilAudioMappingPropertySetId,
    .notifiesAvailability = true,
    .block = "AUDIO",
    .settings =
        "AudioOut0: AudioIn2\nAudioOut15: TTMute\nAudioEncode7: DolbyE1\nAudioInPair0: AESPair1\n"
        "AudioInPair7: MutePair\nAudioInLevel0: -6\nAudioInLevel15: 6\nAudioDDLevel3: -1\nAudioUserDelay7: 40\n"
        "AES output select: true\nAnalog input ref level: 18\nMetadata source: User\n"
        "Metadata channel mode: Mode20\nMetadata drc profile: Speech\nMetadata lfe select: false\n"
        "Metadata dialog level: -27\nAudio meter channels: MeterChan15&16\nResetValues: 3\n",
    .change = "AudioOut3: AudioIn1\n",
    .availabilityBlock = "AUDIO AVAILABILITY",
    .availability =
        "Audio level range: -12 12\nAnalog input ref level range: 0 24\nAnalog delay range: 0 100\n"
        "Audio selections: AudioIn1 TTMute\n",
    .availabilityChange = "Audio selections: AudioIn1\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilNetworkConfig>{
    .id = morquilNetworkConfigPropertySetId,
    .notifiesAvailability = false,
    .block = "NETWORK CONFIG",
    .settings =
        "Friendly name: Studio 1\nDHCP enabled: true\nIP address: 3232238152\nGateway: 3232238081\n"
        "Subnet: 4294967040\n",
    .change = "Friendly name: Studio 2\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilDeviceFilenames>{.id = morquilDeviceFilenamesPropertySetId,
                                                                  .notifiesAvailability = false,
                                                                  .block = "DEVICE FILENAMES",
                                                                  .settings = "Still frame name: logo.img\n",
                                                                  .change = "Still frame name: Logo.img\n"};

template <>
inline constexpr FeatureCase featureCase<CMorquilPreset>{
    .id = morquilPresetPropertySetId,
    .notifiesAvailability = true,
    .block = "PRESET",
    .settings = "Save: 1\nRecall: 2\nPresetName0: First\nPresetName5: Sixth\n",
    .change = "PresetName0: Other\n",
    .availabilityBlock = "PRESET AVAILABILITY",
    .availability = "Preset range: 1 8\n",
    .availabilityChange = "Preset range: 1 7\n"};

}  // namespace Morquil::Testing
