#pragma once

#include "protocol/words/video_modes.h"

namespace Morquil::Simulator {

inline bool IsStandardDefinition(const VideoModeDetails& mode) {
    return mode.height < 720;
}

}  // namespace Morquil::Simulator
