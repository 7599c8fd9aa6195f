#include "settings/settings_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <set>
#include <string>
#include <thread>

#include "tests/kit/temporary_folder.h"
#include "transport/file_descriptor.h"

namespace Morquil {
namespace {

using Testing::ContentOf;
using Testing::TemporaryFolder;
using Names = std::set<std::string>;

struct stat StatusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

mode_t ModeOf(const std::string& path) {
    return StatusOf(path).st_mode & 07777;
}

// Limits files to `limit` bytes. The signal for a longer file would end the process.
class SmallDisk {
public:
    explicit SmallDisk(rlim_t limit) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small{limit, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk() { setrlimit(RLIMIT_FSIZE, &before_); }

private:
    rlimit before_{};
};

// Drops root's privileges over files from this thread, so that permissions apply to it too.
class OrdinaryUser {
public:
    OrdinaryUser() : wasRoot_(geteuid() == 0) {
        if (wasRoot_) {
            setfsuid(user);
        }
    }
    ~OrdinaryUser() {
        if (wasRoot_) {
            setfsuid(0);
        }
    }

private:
    static constexpr uid_t user = 65534;
    const bool wasRoot_;
};

TEST(SettingsFile, GetsTheModeThatANewFileGets) {
    const TemporaryFolder folder;
    const mode_t before = umask(027);
    EXPECT_TRUE(WriteSettingsFile(folder.PathOf("new.txt"), "text"));
    umask(before);
    EXPECT_EQ(ModeOf(folder.PathOf("new.txt")), 0640U);
}

TEST(SettingsFile, KeepsItsMode) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "before");
    for (const mode_t mode : {0600U, 0666U, 0755U, 0640U}) {
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        EXPECT_TRUE(WriteSettingsFile(path, "after"));
        EXPECT_EQ(ModeOf(path), mode);
    }
}

TEST(SettingsFile, IsAnotherFileOnceItIsReplaced) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "before");
    const FileDescriptor reader(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_TRUE(WriteSettingsFile(path, "after"));
    std::array<char, 16> seen{};
    EXPECT_EQ(read(reader.Get(), seen.data(), seen.size()), 6);
    EXPECT_STREQ(seen.data(), "before");
}

TEST(SettingsFile, IsFoundThroughLinksThatStay) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.Path() / "real");
    std::filesystem::create_symlink("real/settings.txt", folder.Path() / "relative");
    std::filesystem::create_symlink(folder.Path() / "relative", folder.Path() / "absolute");
    const std::string file = folder.Make("real/settings.txt", "before");
    EXPECT_TRUE(WriteSettingsFile(folder.PathOf("absolute"), "after"));
    EXPECT_EQ(ContentOf(file), "after");
    EXPECT_TRUE(S_ISLNK(StatusOf(folder.PathOf("relative")).st_mode));
    EXPECT_TRUE(S_ISLNK(StatusOf(folder.PathOf("absolute")).st_mode));
    EXPECT_EQ(folder.Names(), (Names{"absolute", "real", "relative"}));
}

TEST(SettingsFile, IsNotFoundThroughCircularLinks) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink("b", folder.Path() / "a");
    std::filesystem::create_symlink("a", folder.Path() / "b");
    EXPECT_FALSE(WriteSettingsFile(folder.PathOf("a"), "text"));
    EXPECT_EQ(folder.Names(), (Names{"a", "b"}));
}

TEST(SettingsFile, IsOverwrittenWhereItHasNoNameAnyMore) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "a longer text before");
    const FileDescriptor open(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    const std::string link = "/proc/self/fd/" + std::to_string(open.Get());
    std::filesystem::remove(folder.Path() / "settings.txt");
    EXPECT_TRUE(WriteSettingsFile(link, "nameless"));
    EXPECT_EQ(ContentOf(link), "nameless");
    EXPECT_EQ(folder.Names(), Names{});
}

TEST(SettingsFile, LeavesAFileUnchangedThatItMayNotWrite) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "before");
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::all);
    const OrdinaryUser user;
    EXPECT_FALSE(WriteSettingsFile(path, "after"));
    EXPECT_EQ(ContentOf(path), "before");
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
}

TEST(SettingsFile, IsOverwrittenInAFolderThatRefusesNewFiles) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", "before");
    ASSERT_EQ(chmod(path.c_str(), 0666), 0);
    std::filesystem::permissions(folder.Path(), std::filesystem::perms(0555));
    {
        const OrdinaryUser user;
        EXPECT_TRUE(WriteSettingsFile(path, "after"));
        EXPECT_FALSE(WriteSettingsFile(folder.PathOf("new.txt"), "text"));
    }
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::all);
    EXPECT_EQ(ContentOf(path), "after");
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
}

TEST(SettingsFile, KeepsItsContentWhenTheDiskIsFull) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", std::string(500, 'x'));
    {
        const SmallDisk disk(1000);
        EXPECT_TRUE(WriteSettingsFile(path, std::string(4000, 'y')));
        EXPECT_TRUE(WriteSettingsFile(folder.PathOf("new.txt"), std::string(4000, 'y')));
    }
    EXPECT_EQ(ContentOf(path), std::string(500, 'x'));
    EXPECT_EQ(folder.Names(), Names{"settings.txt"});
}

// Overwritten in place, since the folder accepts no file beside it.
TEST(SettingsFile, KeepsItsContentWhenTheDiskIsFullAndItsFolderRefusesNewFiles) {
    const TemporaryFolder folder;
    const std::string path = folder.Make("settings.txt", std::string(500, 'x'));
    ASSERT_EQ(chmod(path.c_str(), 0666), 0);
    std::filesystem::permissions(folder.Path(), std::filesystem::perms(0555));
    {
        const OrdinaryUser user;
        const SmallDisk disk(1000);
        EXPECT_TRUE(WriteSettingsFile(path, std::string(4000, 'y')));
    }
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::all);
    EXPECT_EQ(ContentOf(path), std::string(500, 'x'));
}

TEST(SettingsFile, LeavesNoSignalPendingAfterAFullDisk) {
    const TemporaryFolder folder;
    {
        const SmallDisk disk(1000);
        EXPECT_TRUE(WriteSettingsFile(folder.PathOf("new.txt"), std::string(4000, 'y')));
    }
    sigset_t waiting;
    sigpending(&waiting);
    EXPECT_FALSE(sigismember(&waiting, SIGXFSZ));
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    EXPECT_FALSE(sigismember(&mask, SIGXFSZ));
    EXPECT_FALSE(sigismember(&mask, SIGPIPE));
}

TEST(SettingsFile, IsWrittenToDevicesInPlace) {
    EXPECT_TRUE(WriteSettingsFile("/dev/null", "text"));
    EXPECT_TRUE(WriteSettingsFile("/dev/full", "text"));
    EXPECT_TRUE(S_ISCHR(StatusOf("/dev/null").st_mode));
    EXPECT_TRUE(S_ISCHR(StatusOf("/dev/full").st_mode));
}

TEST(SettingsFile, IsNotWrittenIntoAPipeWithoutAReader) {
    const TemporaryFolder folder;
    const std::string path = folder.PathOf("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_FALSE(WriteSettingsFile(path, "text"));
    EXPECT_TRUE(S_ISFIFO(StatusOf(path).st_mode));
}

TEST(SettingsFile, IsWrittenWholeIntoAPipeThatHoldsLess) {
    const TemporaryFolder folder;
    const std::string path = folder.PathOf("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const FileDescriptor reader(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_EQ(fcntl(reader.Get(), F_SETFL, 0), 0);
    const std::string text(300000, 'x');
    std::thread writer([&] { EXPECT_TRUE(WriteSettingsFile(path, text)); });
    std::string seen;
    std::array<char, 4096> piece;
    while (seen.size() < text.size()) {
        const ssize_t length = read(reader.Get(), piece.data(), piece.size());
        seen.append(piece.data(), static_cast<std::size_t>(length < 0 ? 0 : length));
    }
    writer.join();
    EXPECT_EQ(seen, text);
}

TEST(SettingsFile, SurvivesAPipeWhoseReaderGoes) {
    const TemporaryFolder folder;
    const std::string path = folder.PathOf("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    FileDescriptor reader(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_EQ(fcntl(reader.Get(), F_SETFL, 0), 0);
    std::thread writer([&] { EXPECT_TRUE(WriteSettingsFile(path, std::string(300000, 'x'))); });
    char first = 0;
    while (read(reader.Get(), &first, 1) != 1) {
    }
    reader = FileDescriptor();
    writer.join();
    EXPECT_EQ(first, 'x');
}

class ReadPipe : public testing::Test {
protected:
    ReadPipe() { EXPECT_EQ(mkfifo(path.c_str(), 0600), 0); }
    FileDescriptor OpenWriter() const { return FileDescriptor(open(path.c_str(), O_RDWR | O_CLOEXEC)); }

    const TemporaryFolder folder;
    const std::string path = folder.PathOf("pipe");
    std::atomic<bool> stopped = false;
    std::array<char, 16> piece{};
};

TEST_F(ReadPipe, IsAtItsEndWithoutAWriter) {
    SettingsFileReader reader(path, stopped);
    EXPECT_TRUE(reader.IsOpen());
    EXPECT_EQ(reader.Read(piece.data(), piece.size()), 0U);
}

TEST_F(ReadPipe, WaitsForItsWriterUntilItLeaves) {
    FileDescriptor writer = OpenWriter();
    SettingsFileReader reader(path, stopped);
    std::thread late([&] {
        EXPECT_EQ(write(writer.Get(), "text", 4), 4);
        writer = FileDescriptor();
    });
    EXPECT_EQ(reader.Read(piece.data(), piece.size()), 4U);
    EXPECT_EQ(reader.Read(piece.data(), piece.size()), 0U);
    late.join();
}

TEST_F(ReadPipe, IsAtItsEndOnceTheReaderIsStopped) {
    const FileDescriptor writer = OpenWriter();
    SettingsFileReader reader(path, stopped);
    std::thread stopper([&] { stopped = true; });
    EXPECT_EQ(reader.Read(piece.data(), piece.size()), 0U);
    stopper.join();
}

TEST_F(ReadPipe, ReturnsWhatIsThereAfterTheReaderIsStopped) {
    const FileDescriptor writer = OpenWriter();
    ASSERT_EQ(write(writer.Get(), "text", 4), 4);
    stopped = true;
    SettingsFileReader reader(path, stopped);
    EXPECT_EQ(reader.Read(piece.data(), piece.size()), 4U);
    EXPECT_EQ(reader.Read(piece.data(), piece.size()), 0U);
}

}  // namespace
}  // namespace Morquil
