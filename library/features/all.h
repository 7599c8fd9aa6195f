#pragma once

#include <tuple>

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

namespace Morquil {

/// The features that are handed out to hosts, in the order of their interfaces. Where several share a block, the copy
/// of the first goes into a settings file.
using Features = std::tuple<CMorquilInputConfiguration, CMorquilOutputConfiguration, CMorquilVideoProcAmp,
                            CMorquilColorCorrection, CMorquilVideoClip, CMorquilAspectFill, CMorquilNoiseReduction,
                            CMorquilTestPattern, CMorquilVideoAdvanced, CMorquilTimecode, CMorquilClosedCaption,
                            CMorquilVideoIndex, CMorquilReference, CMorquilVariableAspectRatio, CMorquilAudioMapping,
                            CMorquil3dMode, CMorquilNetworkConfig, CMorquilDeviceFilenames, CMorquilPreset>;

/// Features that mirror the device but are never handed out.
using HiddenFeatures = std::tuple<CMorquilAlign>;

}  // namespace Morquil
