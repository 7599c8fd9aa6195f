#include "protocol/words/video_modes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "tests/unit/protocol/expected_words.h"

namespace Morquil {
namespace {

using Testing::ExpectWords;

// clang-format off
TEST(VideoModes, HaveTheirValues) {
    ExpectWords<VideoModes>({
        {morquilAPIVideoModeNTSC,          "525i59.94 NTSC"},
        {morquilAPIVideoModePAL,           "625i50 PAL"},
        {morquilAPIVideoModeNTSCp,         "525p29.97 NTSC"},
        {morquilAPIVideoMode720p5994,      "720p59.94"},
        {morquilAPIVideoMode720p50,        "720p50"},
        {morquilAPIVideoMode720p60,        "720p60"},
        {morquilAPIVideoMode1080i5994,     "1080i59.94"},
        {morquilAPIVideoMode1080i50,       "1080i50"},
        {morquilAPIVideoMode1080i60,       "1080i60"},
        {morquilAPIVideoMode1080p30,       "1080p30"},
        {morquilAPIVideoMode1080p2997,     "1080p29.97"},
        {morquilAPIVideoMode1080p25,       "1080p25"},
        {morquilAPIVideoMode1080p24,       "1080p24"},
        {morquilAPIVideoMode1080p2398,     "1080p23.98"},
        {morquilAPIVideoMode1080p5994,     "1080p59.94"},
        {morquilAPIVideoMode1080p50,       "1080p50"},
        {morquilAPIVideoMode1080p60,       "1080p60"},
        {morquilAPIVideoMode1080psf2398,   "1080PsF23.98"},
        {morquilAPIVideoMode1080psf24,     "1080PsF24"},
        {morquilAPIVideoMode1080psf25,     "1080PsF25"},
        {morquilAPIVideoMode1080psf2997,   "1080PsF29.97"},
        {morquilAPIVideoMode1080psf30,     "1080PsF30"},
        {morquilAPIVideoMode2K1080p2398,   "2K DCI 23.98p"},
        {morquilAPIVideoMode2K1080p24,     "2K DCI 24p"},
        {morquilAPIVideoMode2K1080psf2398, "2K DCI 23.98PsF"},
        {morquilAPIVideoMode2K1080psf24,   "2K DCI 24PsF"},
        {morquilAPIVideoModeUHDp2398,      "2160p23.98"},
        {morquilAPIVideoModeUHDp24,        "2160p24"},
        {morquilAPIVideoModeUHDp25,        "2160p25"},
        {morquilAPIVideoModeUHDp2997,      "2160p29.97"},
        {morquilAPIVideoModeUHDp30,        "2160p30"},
        {morquilAPIVideoModeUHDp60,        "2160p60"},
        {morquilAPIVideoModeUHDp5994,      "2160p59.94"},
        {morquilAPIVideoModeUHDp50,        "2160p50"}});
}

struct ExpectedMode {
    _MorquilAPIVideoMode mode;
    VideoModeDetails details;
};

constexpr ExpectedMode expectedModes[] = {
    {morquilAPIVideoModeNTSC,          {720, 486, 6, 30000, 1001, 1}},
    {morquilAPIVideoModePAL,           {720, 576, 5, 25000, 1000, 1}},
    {morquilAPIVideoModeNTSCp,         {720, 486, 7, 60000, 1001, 3}},
    {morquilAPIVideoMode720p5994,      {1280, 720, 6, 60000, 1001, 2}},
    {morquilAPIVideoMode720p50,        {1280, 720, 5, 50000, 1000, 2}},
    {morquilAPIVideoMode720p60,        {1280, 720, 7, 60000, 1000, 2}},
    {morquilAPIVideoMode1080i5994,     {1920, 1080, 6, 30000, 1001, 0}},
    {morquilAPIVideoMode1080i50,       {1920, 1080, 5, 25000, 1000, 0}},
    {morquilAPIVideoMode1080i60,       {1920, 1080, 7, 30000, 1000, 0}},
    {morquilAPIVideoMode1080p30,       {1920, 1080, 4, 30000, 1000, 2}},
    {morquilAPIVideoMode1080p2997,     {1920, 1080, 3, 30000, 1001, 2}},
    {morquilAPIVideoMode1080p25,       {1920, 1080, 2, 25000, 1000, 2}},
    {morquilAPIVideoMode1080p24,       {1920, 1080, 1, 24000, 1000, 2}},
    {morquilAPIVideoMode1080p2398,     {1920, 1080, 0, 24000, 1001, 2}},
    {morquilAPIVideoMode1080p5994,     {1920, 1080, 6, 60000, 1001, 2}},
    {morquilAPIVideoMode1080p50,       {1920, 1080, 5, 50000, 1000, 2}},
    {morquilAPIVideoMode1080p60,       {1920, 1080, 7, 60000, 1000, 2}},
    {morquilAPIVideoMode1080psf2398,   {1920, 1080, 0, 24000, 1001, 6}},
    {morquilAPIVideoMode1080psf24,     {1920, 1080, 1, 24000, 1000, 6}},
    {morquilAPIVideoMode1080psf25,     {1920, 1080, 2, 25000, 1000, 6}},
    {morquilAPIVideoMode1080psf2997,   {1920, 1080, 3, 30000, 1001, 6}},
    {morquilAPIVideoMode1080psf30,     {1920, 1080, 4, 30000, 1000, 6}},
    {morquilAPIVideoMode2K1080p2398,   {2048, 1080, 0, 24000, 1001, 2}},
    {morquilAPIVideoMode2K1080p24,     {2048, 1080, 1, 24000, 1000, 2}},
    {morquilAPIVideoMode2K1080psf2398, {2048, 1080, 0, 24000, 1001, 6}},
    {morquilAPIVideoMode2K1080psf24,   {2048, 1080, 1, 24000, 1000, 6}},
    {morquilAPIVideoModeUHDp2398,      {3840, 2160, 0, 24000, 1001, 2}},
    {morquilAPIVideoModeUHDp24,        {3840, 2160, 1, 24000, 1000, 2}},
    {morquilAPIVideoModeUHDp25,        {3840, 2160, 2, 25000, 1000, 2}},
    {morquilAPIVideoModeUHDp2997,      {3840, 2160, 3, 30000, 1001, 2}},
    {morquilAPIVideoModeUHDp30,        {3840, 2160, 4, 30000, 1000, 2}},
    {morquilAPIVideoModeUHDp60,        {3840, 2160, 7, 60000, 1000, 2}},
    {morquilAPIVideoModeUHDp5994,      {3840, 2160, 6, 60000, 1001, 2}},
    {morquilAPIVideoModeUHDp50,        {3840, 2160, 5, 50000, 1000, 2}}};
// clang-format on

TEST(VideoModes, CarryTheirPictureAndRate) {
    for (const auto& [mode, expected] : expectedModes) {
        const auto* const details = VideoModes::Details(static_cast<std::size_t>(mode));
        ASSERT_NE(details, nullptr) << mode;
        EXPECT_EQ(details->width, expected.width) << mode;
        EXPECT_EQ(details->height, expected.height) << mode;
        EXPECT_EQ(details->frameRateIndex, expected.frameRateIndex) << mode;
        EXPECT_EQ(details->timeScale, expected.timeScale) << mode;
        EXPECT_EQ(details->frameDuration, expected.frameDuration) << mode;
        EXPECT_EQ(details->scanCode, expected.scanCode) << mode;
    }
}

TEST(VideoModes, HaveNoRowBeyondTheLast) {
    EXPECT_EQ(std::size(expectedModes), 34U);
    EXPECT_NE(VideoModes::Details(33), nullptr);
    EXPECT_EQ(VideoModes::Details(34), nullptr);
    EXPECT_EQ(VideoModes::Details(static_cast<std::size_t>(-1)), nullptr);
}

TEST(VideoModes, NameARateOfTheFrameRateTable) {
    for (std::size_t mode = 0; mode < VideoModes::words.Size(); ++mode) {
        EXPECT_LT(static_cast<std::size_t>(VideoModes::Details(mode)->frameRateIndex), FrameRates::words.Size())
            << mode;
    }
}

// clang-format off
TEST(FrameRates, HaveTheirNumbersAndTheirHighestTimecodeFrame) {
    ExpectWords<FrameRates>({
        {0, "23.98 FPS"},
        {1, "24 FPS"},
        {2, "25 FPS"},
        {3, "29.97 FPS"},
        {4, "30 FPS"},
        {5, "50 FPS"},
        {6, "59.94 FPS"},
        {7, "60 FPS"}});
    EXPECT_EQ(FrameRates::highestTimecodeFrame, (std::array<std::int32_t, 8>{23, 23, 24, 29, 29, 24, 29, 29}));
}
// clang-format on

}  // namespace
}  // namespace Morquil
