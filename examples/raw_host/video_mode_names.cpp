#include "video_mode_names.h"

#include <array>
#include <cstddef>

const char* NameOf(_MorquilAPIVideoMode mode) {
    // In the order of the enumeration, which counts from 0.
    static constexpr std::array<const char*, 34> names{
        "525i59.94 NTSC",  "625i50 PAL",   "525p29.97 NTSC", "720p59.94", "720p50",        "720p60",
        "1080i59.94",      "1080i50",      "1080i60",        "1080p30",   "1080p29.97",    "1080p25",
        "1080p24",         "1080p23.98",   "1080p59.94",     "1080p50",   "1080p60",       "1080PsF23.98",
        "1080PsF24",       "1080PsF25",    "1080PsF29.97",   "1080PsF30", "2K DCI 23.98p", "2K DCI 24p",
        "2K DCI 23.98PsF", "2K DCI 24PsF", "2160p23.98",     "2160p24",   "2160p25",       "2160p29.97",
        "2160p30",         "2160p60",      "2160p59.94",     "2160p50"};
    const auto row = static_cast<std::size_t>(mode);
    return row < names.size() ? names[row] : "unknown";
}
