#include "simulator/streams/input_file.h"

#include <gtest/gtest.h>

#include "simulator/program/program.h"
#include "tests/kit/temporary_folder.h"

namespace Morquil::Simulator {
namespace {

using Morquil::Testing::TemporaryFolder;

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

TEST(InputFile, IsReadWholeUpToItsLimit) {
    const TemporaryFolder folder;
    const std::string content(mebibyte, 'x');
    const std::string file = folder.Make("file", content);
    EXPECT_EQ(ReadInputFile(file, mebibyte).content, content);
    EXPECT_EQ(ReadInputFile(file, mebibyte).error, "");
}

TEST(InputFile, IsRefusedWhenItIsLarger) {
    const TemporaryFolder folder;
    const FileReading reading = ReadInputFile(folder.Make("file", std::string(mebibyte + 1, 'x')), mebibyte);
    EXPECT_EQ(reading.content, "");
    EXPECT_EQ(reading.error, "is larger than 1 MiB, the limit for such a file");
}

TEST(Program, RefusesOversizedFiles) {
    const TemporaryFolder folder;
    const std::string file = folder.Make("file", std::string(4 * mebibyte + 1, '\n'));
    for (const Options& options : {Options{.scriptFile = file}, Options{.settingsFile = file}}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(std::make_unique<Program>(options)->Start(), usageError);
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "morquil-sim: " + file + ": is larger than 4 MiB, the limit for such a file\n");
    }
}

}  // namespace
}  // namespace Morquil::Simulator
