#pragma once

#include "command/properties/property_rows.h"

namespace Morquil::Command {

/// The number of picture lines in a frame, used to request the ranges that depend on it.
constexpr unsigned FrameHeight(morquil::VideoMode mode) {
    using Mode = morquil::VideoMode;
    if (mode == Mode::NTSC || mode == Mode::NTSCp) {
        return 486;
    }
    if (mode == Mode::PAL) {
        return 576;
    }
    if (mode >= Mode::Mode720p5994 && mode <= Mode::Mode720p60) {
        return 720;
    }
    return mode >= Mode::UHDp2398 ? 2160 : 1080;
}

inline morquil::VideoMode InputMode(const morquil::Device& device) {
    return device.InputConfiguration().GetVideoMode();
}
inline morquil::VideoMode OutputMode(const morquil::Device& device) {
    return device.OutputConfiguration().GetVideoMode();
}

/// A range that depends on the frame height.
template <auto range, auto presentMode>
Offer RangeOfHeight(const morquil::Device& device) {
    const auto feature = Open<typename Call<decltype(range)>::Feature>(device);
    return AsLimits((feature.*range)(FrameHeight(presentMode(device))));
}

/// A range that depends on the output mode.
template <auto range>
Offer RangeOfOutputMode(const morquil::Device& device) {
    const auto feature = Open<typename Call<decltype(range)>::Feature>(device);
    return AsLimits((feature.*range)(OutputMode(device)));
}

}  // namespace Morquil::Command
