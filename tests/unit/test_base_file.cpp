#include "file.h"
#include "filelimits.h"
#include "messageof.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using base::ReadFile;
using base::ReplaceFile;
using testing::HasSubstr;

constexpr uid_t anOperator = 12345;
constexpr gid_t operators = 12346;

/// A folder with a file.
struct FileTest : testing::Test
{
    ~FileTest() override { fs::permissions(dir.Path(), fs::perms::all); }

    const TempDir dir;
    const std::string file = dir.Write("machine.ini", "old");
};

/// The same, with a file of another user. Nobody but root can make one, and no stand-in shows what
/// the kernel allows; the checks that have to pass before a change lands run as root.
struct StrangersFileTest : FileTest
{
    void SetUp() override
    {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "only the root user gives files away";
        }
        ASSERT_EQ(::chown(file.c_str(), anOperator, operators), 0);
    }
};

/// @return a group beside the usual one that this user may give a file to; the usual one when there
///         is no other.
gid_t OtherGroup()
{
    if (::geteuid() == 0) {
        return operators;
    }
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(0, ::getgroups(0, nullptr))));
    ::getgroups(static_cast<int>(groups.size()), groups.data());
    return groups.empty() ? ::getegid() : groups.back();
}

TEST_F(FileTest, IsReadByteByByte)
{
    const std::string bytes("\0\r\n\xff", 4);

    const auto read = ReadFile(dir.Write("bytes", bytes));

    ASSERT_TRUE(read);
    EXPECT_EQ(*read, bytes);
}

TEST_F(FileTest, ThatCannotBeReadIsNamedWithTheReason)
{
    EXPECT_EQ(
        MessageOf(ReadFile(dir.File("none"))),
        "cannot read \"" + dir.File("none") + "\": No such file or directory");
    EXPECT_EQ(
        MessageOf(ReadFile(dir.Path())),
        "cannot read \"" + dir.Path().string() + "\": Is a directory");
}

TEST_F(FileTest, IsReadOnlyWhenItIsARegularOne)
{
    ASSERT_EQ(::mkfifo(dir.File("pipe").c_str(), S_IRUSR | S_IWUSR), 0);

    EXPECT_EQ(
        MessageOf(ReadFile(dir.File("pipe"))),
        "cannot read \"" + dir.File("pipe") + "\": Invalid argument");
    EXPECT_FALSE(ReadFile("/dev/zero"));
}

TEST_F(FileTest, IsWrittenByteByByte)
{
    const std::string bytes("\0\r\n\xff", 4);

    EXPECT_TRUE(ReplaceFile(file, bytes));
    EXPECT_TRUE(ReplaceFile(dir.File("new"), bytes));
    EXPECT_TRUE(ReplaceFile(dir.File("empty"), ""));

    EXPECT_EQ(dir.Read("machine.ini"), bytes);
    EXPECT_EQ(dir.Read("new"), bytes);
    EXPECT_THAT(dir.Names(), testing::UnorderedElementsAre("machine.ini", "new", "empty"));
}

TEST_F(FileTest, IsReplacedAndNeverWrittenInto)
{
    fs::create_hard_link(file, dir.File("same"));

    ASSERT_TRUE(ReplaceFile(file, "new"));

    EXPECT_EQ(dir.Read("same"), "old");
    EXPECT_EQ(dir.Read("machine.ini"), "new");
}

TEST_F(FileTest, IsWholeAtEveryMoment)
{
    constexpr int writes = 200;
    std::atomic<bool> done = false;
    std::atomic<int> damaged = 0;
    std::thread reader([&] {
        while (!done) {
            damaged += dir.Read("machine.ini") == "old" ? 0 : 1;
        }
    });

    for (int i = 0; i < writes; ++i) {
        EXPECT_TRUE(ReplaceFile(file, "old"));
    }
    done = true;
    reader.join();

    EXPECT_EQ(damaged, 0);
}

TEST_F(FileTest, KeepsItsMode)
{
    fs::permissions(file, static_cast<fs::perms>(0640));

    ASSERT_TRUE(ReplaceFile(file, "new"));

    EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(FileTest, KeepsItsOwnerAndItsGroup)
{
    const uid_t owner = ::geteuid() == 0 ? anOperator : ::geteuid();
    ASSERT_EQ(::chown(file.c_str(), owner, OtherGroup()), 0);
    fs::permissions(file, static_cast<fs::perms>(0640));

    ASSERT_TRUE(ReplaceFile(file, "new"));

    struct stat status = {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, owner);
    EXPECT_EQ(status.st_gid, OtherGroup());
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_EQ(dir.Read("machine.ini"), "new");
}

TEST_F(StrangersFileTest, IsNotOpenedToAnotherGroupWhenItsOwnCannotBeKept)
{
    fs::permissions(file, static_cast<fs::perms>(0662));
    {
        const Unprivileged user;
        ASSERT_TRUE(ReplaceFile(file, "new"));
    }

    EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0622));
}

TEST_F(StrangersFileTest, IsNotReplacedBehindALinkOfSomebodyElseInAStickyFolder)
{
    fs::permissions(dir.Path(), static_cast<fs::perms>(01777));
    fs::create_symlink(file, dir.File("link"));
    ASSERT_EQ(::lchown(dir.File("link").c_str(), anOperator, operators), 0);

    EXPECT_THAT(MessageOf(ReplaceFile(dir.File("link"), "new")), HasSubstr("Permission denied"));
    EXPECT_EQ(dir.Read("machine.ini"), "old");

    ASSERT_EQ(::chown(dir.Path().c_str(), anOperator, operators), 0);
    EXPECT_TRUE(ReplaceFile(dir.File("link"), "new")) << "the folder's owner may";
    EXPECT_EQ(dir.Read("machine.ini"), "new");
}

TEST_F(FileTest, IsReplacedBehindALink)
{
    fs::create_directory(dir.File("etc"));
    dir.Write("etc/real.ini", "old");
    fs::create_symlink("etc/real.ini", dir.File("middle"));
    fs::create_symlink(dir.File("middle"), dir.File("link"));

    ASSERT_TRUE(ReplaceFile(dir.File("link"), "new"));

    EXPECT_TRUE(fs::is_symlink(dir.File("link")));
    EXPECT_TRUE(fs::is_symlink(dir.File("middle")));
    EXPECT_EQ(dir.Read("etc/real.ini"), "new");
}

TEST_F(FileTest, IsCreatedBehindALinkToNothing)
{
    fs::create_symlink("real.ini", dir.File("link"));

    ASSERT_TRUE(ReplaceFile(dir.File("link"), "new"));

    EXPECT_TRUE(fs::is_symlink(dir.File("link")));
    EXPECT_EQ(dir.Read("real.ini"), "new");
}

TEST_F(FileTest, IsNotReplacedBehindLinksInACircle)
{
    fs::create_symlink("b", dir.File("a"));
    fs::create_symlink("a", dir.File("b"));

    EXPECT_FALSE(ReplaceFile(dir.File("a"), "new"));

    EXPECT_TRUE(fs::is_symlink(dir.File("a")));
    EXPECT_TRUE(fs::is_symlink(dir.File("b")));
}

TEST_F(FileTest, StaysWhenTheDiskIsFull)
{
    {
        const FullDisk disk(500);
        EXPECT_EQ(
            MessageOf(ReplaceFile(file, std::string(1000, 'x'))),
            "cannot write \"" + file + "\": File too large");
    }

    EXPECT_EQ(dir.Read("machine.ini"), "old");
    EXPECT_THAT(dir.Names(), testing::ElementsAre("machine.ini"));
}

TEST_F(FileTest, StaysInAFolderThatIsWriteProtected)
{
    fs::permissions(file, fs::perms::all);
    fs::permissions(dir.Path(), static_cast<fs::perms>(0555));
    {
        const Unprivileged user;
        EXPECT_THAT(MessageOf(ReplaceFile(file, "new")), HasSubstr("Permission denied"));
    }

    EXPECT_EQ(dir.Read("machine.ini"), "old");
    EXPECT_THAT(dir.Names(), testing::ElementsAre("machine.ini"));
}

TEST_F(FileTest, StaysWhenItIsWriteProtected)
{
    fs::permissions(file, static_cast<fs::perms>(0444));
    {
        const Unprivileged user;
        EXPECT_THAT(MessageOf(ReplaceFile(file, "new")), HasSubstr("Permission denied"));
    }

    EXPECT_EQ(dir.Read("machine.ini"), "old");
}

TEST_F(FileTest, IsNoFolderAndNoPipe)
{
    fs::create_directory(dir.File("folder"));
    ASSERT_EQ(::mkfifo(dir.File("pipe").c_str(), S_IRUSR | S_IWUSR), 0);

    EXPECT_FALSE(ReplaceFile(dir.File("folder"), "new"));
    EXPECT_FALSE(ReplaceFile(dir.File("pipe"), "new"));

    EXPECT_TRUE(fs::is_directory(dir.File("folder")));
    EXPECT_TRUE(fs::is_fifo(dir.File("pipe")));
}

TEST_F(FileTest, HasANameAndAFolder)
{
    EXPECT_FALSE(ReplaceFile("", "new"));
    EXPECT_FALSE(ReplaceFile("/", "new"));
    EXPECT_EQ(
        MessageOf(ReplaceFile(dir.File("no/machine.ini"), "new")),
        "cannot write \"" + dir.File("no/machine.ini") + "\": No such file or directory");
    EXPECT_THAT(dir.Names(), testing::ElementsAre("machine.ini"));
}

TEST_F(FileTest, IsReplacedOverWhatACrashLeftBehind)
{
    dir.Write("machine.ini." + std::to_string(::getpid()) + ".new", "ne");

    ASSERT_TRUE(ReplaceFile(file, "new"));

    EXPECT_EQ(dir.Read("machine.ini"), "new");
    EXPECT_THAT(dir.Names(), testing::ElementsAre("machine.ini"));
}

} // namespace
