#include "settings/settings_file.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>

#include "tests/kit/temporary_folder.h"

namespace Morquil {
namespace {

using Testing::ContentOf;
using Testing::TemporaryFolder;
using Testing::ToPath;

TEST(SettingsFile, LeavesAReadOnlyFileUnchanged) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "before\n");
    ASSERT_TRUE(SetFileAttributesW(ToPath(path).c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_FALSE(WriteSettingsFile(path, "after\n"));
    EXPECT_EQ(ContentOf(path), "before\n");
    EXPECT_EQ(folder.Names().size(), 1U);
    SetFileAttributesW(ToPath(path).c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(SettingsFile, LeavesAFileUnchangedThatOthersMayNotWrite) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "before\n");
    const HANDLE other =
        CreateFileW(ToPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(WriteSettingsFile(path, "after\n"));
    CloseHandle(other);
    EXPECT_EQ(ContentOf(path), "before\n");
}

TEST(SettingsFile, IsAnotherFileOnceItIsReplaced) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "before\n");
    const auto number = [&path] {
        const HANDLE file = CreateFileW(ToPath(path).c_str(), 0, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
        BY_HANDLE_FILE_INFORMATION information{};
        EXPECT_TRUE(GetFileInformationByHandle(file, &information));
        CloseHandle(file);
        return information.nFileIndexLow;
    };
    const DWORD before = number();
    EXPECT_TRUE(WriteSettingsFile(path, "after\n"));
    EXPECT_NE(number(), before);
}

TEST(SettingsFile, IsOverwrittenWhereItCannotBeReplaced) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "before\n");
    const HANDLE other = CreateFileW(ToPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                     OPEN_EXISTING, 0, nullptr);
    EXPECT_TRUE(WriteSettingsFile(path, "after\n"));
    char seen[16] = {};
    DWORD length = 0;
    EXPECT_TRUE(ReadFile(other, seen, sizeof seen, &length, nullptr));
    CloseHandle(other);
    EXPECT_EQ(std::string(seen, length), "after\n");
    EXPECT_EQ(ContentOf(path), "after\n");
    EXPECT_EQ(folder.Names().size(), 1U);
}

TEST(SettingsFile, IsWrittenToTheNullDeviceAndToAPipe) {
    EXPECT_TRUE(WriteSettingsFile("NUL", "text\n"));

    const char name[] = "\\\\.\\pipe\\settings-file-test";
    const HANDLE pipe = CreateNamedPipeA(name, PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE, 1, 64, 64, 0, nullptr);
    ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(WriteSettingsFile(name, "text\n"));
    char seen[16] = {};
    DWORD length = 0;
    EXPECT_TRUE(ReadFile(pipe, seen, sizeof seen, &length, nullptr));
    CloseHandle(pipe);
    EXPECT_EQ(std::string(seen, length), "text\n");
}

TEST(SettingsFileReader, WaitsForAPipesWriterUntilItIsStopped) {
    const char name[] = "\\\\.\\pipe\\settings-reader-test";
    const HANDLE pipe = CreateNamedPipeA(name, PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 64, 64, 0, nullptr);
    ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
    std::atomic<bool> stopped = false;
    SettingsFileReader reader(name, stopped);
    ASSERT_TRUE(reader.IsOpen());
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(pipe, "text", 4, &written, nullptr));
    std::array<char, 16> piece{};
    EXPECT_EQ(reader.Read(piece.data(), piece.size()), 4U);
    std::thread stopper([&] { stopped = true; });
    EXPECT_EQ(reader.Read(piece.data(), piece.size()), 0U);
    stopper.join();
    CloseHandle(pipe);
}

}  // namespace
}  // namespace Morquil
