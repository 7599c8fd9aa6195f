#include "settings/settings_file.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>

#include "tests/kit/temporary_folder.h"
#include "tests/kit/threads.h"

namespace Morquil {
namespace {

using Testing::ContentOf;
using Testing::TemporaryFolder;
using Names = std::set<std::string>;

constexpr std::atomic<bool> notStopped = false;

bool CanBeRead(const std::string& path) {
    return SettingsFileReader(path, notStopped).IsOpen();
}

TEST(SettingsFile, CreatesAMissingFile) {
    const TemporaryFolder folder;
    EXPECT_TRUE(WriteSettingsFile(folder.PathOf("new.txt"), "GENLOCK:\nLine offset: 5\n\n\n"));
    EXPECT_EQ(ContentOf(folder.PathOf("new.txt")), "GENLOCK:\nLine offset: 5\n\n\n");
    EXPECT_EQ(folder.Names(), Names{"new.txt"});
}

TEST(SettingsFile, ReplacesALongerAndAShorterContentWhole) {
    const TemporaryFolder folder;
    for (const std::string& before : {std::string(), std::string("x"), std::string(100000, 'x')}) {
        const std::string path = folder.Make("settings.txt", before);
        EXPECT_TRUE(WriteSettingsFile(path, "new\n"));
        EXPECT_EQ(ContentOf(path), "new\n") << before.size() << " bytes before";
        EXPECT_EQ(folder.Names(), Names{"settings.txt"});
    }
}

TEST(SettingsFile, WritesEveryByteUnchanged) {
    using namespace std::string_view_literals;
    const TemporaryFolder folder;
    for (const std::string_view text : {""sv, "\n"sv, "a\r\nb\n\x1A\0\xFF\xC3 end"sv}) {
        EXPECT_TRUE(WriteSettingsFile(folder.PathOf("bytes"), text));
        EXPECT_EQ(ContentOf(folder.PathOf("bytes")), text);
    }
}

TEST(SettingsFile, AcceptsAPathWithCharactersOfAnyScript) {
    const TemporaryFolder folder;
    const std::string name = "Geräte-Einstellungen \xE8\xA8\xAD\xE5\xAE\x9A \xF0\x9F\x8E\xAC.txt";
    EXPECT_TRUE(WriteSettingsFile(folder.PathOf(name), "once\n"));
    EXPECT_TRUE(WriteSettingsFile(folder.PathOf(name), "twice\n"));
    EXPECT_EQ(folder.Names(), Names{name});
    EXPECT_EQ(ContentOf(folder.PathOf(name)), "twice\n");
    EXPECT_TRUE(CanBeRead(folder.PathOf(name)));
}

TEST(SettingsFile, IsNotWrittenIntoAMissingFolder) {
    const TemporaryFolder folder;
    EXPECT_FALSE(WriteSettingsFile(folder.PathOf("missing/settings.txt"), "text"));
    EXPECT_EQ(folder.Names(), Names{});
}

TEST(SettingsFile, IsNotWrittenOverAFolder) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.Path() / "inner");
    EXPECT_FALSE(WriteSettingsFile(folder.PathOf("inner"), "text"));
    EXPECT_FALSE(WriteSettingsFile(folder.PathOf("inner/"), "text"));
    EXPECT_EQ(folder.Names(), Names{"inner"});
}

TEST(SettingsFile, IsNotWrittenUnderANameThatNamesNoFile) {
    using namespace std::string_literals;
    const TemporaryFolder folder;
    EXPECT_FALSE(WriteSettingsFile("", "text"));
    EXPECT_FALSE(WriteSettingsFile(folder.PathOf("new/"), "text"));
    EXPECT_FALSE(WriteSettingsFile(folder.PathOf("a") + "\0b"s, "text"));
    EXPECT_FALSE(WriteSettingsFile(folder.PathOf(std::string(300, 'a')), "text"));
    EXPECT_EQ(folder.Names(), Names{});
}

TEST(SettingsFile, IsFoundInTheCurrentFolder) {
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    EXPECT_TRUE(WriteSettingsFile("here.txt", "first\n"));
    EXPECT_TRUE(WriteSettingsFile("here.txt", "second\n"));
    std::filesystem::current_path(before);
    EXPECT_EQ(ContentOf(folder.PathOf("here.txt")), "second\n");
    EXPECT_EQ(folder.Names(), Names{"here.txt"});
}

// Two threads write different texts to the file again and again. Returns: the contents in between that were neither.
int MixedContents(const std::string& path) {
    const std::string texts[] = {std::string(300000, 'a'), std::string(200000, 'b')};
    int mixed = 0;
    for (int round = 0; round < 20; ++round) {
        std::atomic<std::size_t> started = 0;
        {
            const Morquil::Testing::Threads threads(2, [&] {
                const std::string& text = texts[started++];
                while (started < 2) {
                }
                EXPECT_TRUE(WriteSettingsFile(path, text));
            });
        }
        const std::string content = ContentOf(path);
        mixed += content == texts[0] || content == texts[1] ? 0 : 1;
    }
    return mixed;
}

TEST(SettingsFile, HoldsOneOfTheTextsOfTwoThreadsWhole) {
    const TemporaryFolder folder;
    EXPECT_EQ(MixedContents(folder.PathOf("settings.txt")), 0);
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
}

TEST(SettingsFileReader, ReadsAFileFromItsBeginningToItsEnd) {
    const TemporaryFolder folder;
    SettingsFileReader reader(folder.Make("settings.txt",
                                          "a\r\nb\x1A"
                                          "c"),
                              notStopped);
    ASSERT_TRUE(reader.IsOpen());
    std::array<char, 4> piece;
    ASSERT_EQ(reader.Read(piece.data(), piece.size()), 4U);
    EXPECT_EQ(std::string_view(piece.data(), 4), "a\r\nb");
    ASSERT_EQ(reader.Read(piece.data(), piece.size()), 2U);
    EXPECT_EQ(std::string_view(piece.data(), 2),
              "\x1A"
              "c");
    EXPECT_EQ(reader.Read(piece.data(), piece.size()), 0U);
}

TEST(SettingsFileReader, OpensNoFolderAndNothingThatIsMissing) {
    using namespace std::string_literals;
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "text");
    EXPECT_FALSE(CanBeRead(folder.PathOf("")));
    EXPECT_FALSE(CanBeRead(folder.PathOf("missing.txt")));
    EXPECT_FALSE(CanBeRead(""));
    EXPECT_FALSE(CanBeRead(path + "\0"s));
}

}  // namespace
}  // namespace Morquil
