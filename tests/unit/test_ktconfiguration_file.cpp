#include "filelimits.h"
#include "test_ktconfiguration.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

// Files that are damaged, foreign or protected.

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

ino_t InodeOf(const fs::path& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

TEST_F(KtConfigurationTest, ByteOrderMarksLineEndsAndLatin1AreUnderstood)
{
    const std::vector<std::string> files = {
        "\xef\xbb\xbf[Settings]\nOperator=M\xc3\xbcller\n",
        "[Settings]\r\nOperator=M\xc3\xbcller\r\n",
        "[Settings]\rOperator=M\xc3\xbcller",
        "[Settings]\nOperator=M\xfcller\n",
        std::string(
            "\xff\xfe[\0S\0e\0t\0t\0i\0n\0g\0s\0]\0\n\0O\0p\0e\0r\0a\0t\0o\0r\0=\0"
            "M\0\xfc\0l\0l\0e\0r\0",
            54)};
    for (const std::string& file : files) {
        Write(file);

        EXPECT_EQ(Get("Operator"), wxString(L"M\u00fcller")) << file;
        ASSERT_TRUE(Settings().Set("Language", "de"));

        EXPECT_EQ(Read(), "[Settings]\nOperator=Müller\nLanguage=de\n");
    }
}

TEST_F(KtConfigurationTest, ADamagedFileIsReadAsFarAsItGoesAndStillTakesAKey)
{
    const std::string full(100000, 'x');
    const std::vector<std::string> files = {
        "[Settings]\nLanguage=de\n[Other]\nA=1\n[Settings]\nB=2\n",
        "[Settings]\n[Settings]\n[Settings]\nLanguage=de\n",
        "[Settings]\nLanguage=fr\nLanguage=de\n",
        "[Settings]\nno equals sign\nLanguage=de\n= no key\n=\n",
        "[Settings]\nLanguage=de\n[Unclosed\nA=1\n",
        "[Settings] rest of the line\nLanguage=de\n",
        "[Settings]\nLanguage=de\nEscape=\\\nOdd=\\q\nOpen=\"never closed\nBroken\\\n\\",
        "[]\nA=1\n[..]\nB=2\n[/]\n[/Settings/]\n[Settings]\nLanguage=de\n[a/../b]\n",
        "[Settings]\n!Fixed=fr\nLanguage=de\n!=1\n",
        "[Settings]\nLanguage=de\n[Settings/Language]\nA=1\n[Language]\nB=2\n",
        "[Settings]\nLanguage=de\n\x01\x02\x7f\x1b[31m\xff\xfe\x80\n",
        "[Settings]\nLanguage=de\n" + full + "\n[" + full + "]\n" + full + "=" + full + "\n",
        "\n\n\n[Settings]\nLanguage=de",
        "]]]]\n[[[[\n[[Settings]]\n[Settings]\nLanguage=de\n"};
    for (const std::string& file : files) {
        SCOPED_TRACE(file.substr(0, 100));
        Write(file);

        EXPECT_EQ(Get("Language"), "de");
        ASSERT_TRUE(Settings().Set("PLCLastFile", "/a.plc"));
        EXPECT_EQ(Get("PLCLastFile"), "/a.plc");
        EXPECT_EQ(Get("Language"), "de");
        EXPECT_GE(Read().size(), file.size()) << "Set has lost a line";
        ASSERT_TRUE(Settings().Set("Language", "en"));
        EXPECT_EQ(Get("Language"), "en");
        EXPECT_EQ(Get("PLCLastFile"), "/a.plc");
    }
}

TEST_F(KtConfigurationTest, AFileWithoutTheSectionHasNoKeysAndTakesOne)
{
    const std::vector<std::string> files = {
        "", "\n", "[Settings\nLanguage=de\n", "Language=de\n", "\xff\xff\xff", "[", "="};
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        Write(file);

        EXPECT_EQ(Get("Language"), std::nullopt);
        ASSERT_TRUE(Settings().Set("Language", "en"));

        EXPECT_EQ(Get("Language"), "en");
    }
}

TEST_F(KtConfigurationTest, AFileWithZeroBytesIsReadAndNotReplaced)
{
    const std::string file("[Settings]\nLanguage=de\n[Other]\nA=1\0\0\n", 37);
    Write(file);

    EXPECT_FALSE(Settings().Set("PLCLastFile", "/list.plc"));

    EXPECT_EQ(Get("Language"), "de");
    EXPECT_EQ(Read(), file);
}

TEST_F(KtConfigurationTest, AKeyThatTheFileMarksAsFixedIsNotChanged)
{
    Write("[Settings]\n!Language=de\n");

    EXPECT_FALSE(Settings().Set("Language", "en"));

    EXPECT_EQ(Get("Language"), "de");
    EXPECT_EQ(Read(), "[Settings]\n!Language=de\n");
}

TEST_F(KtConfigurationTest, TheOldFileIsReplacedAndNeverWrittenInto)
{
    Write("[Settings]\nLanguage=de\n");
    fs::create_hard_link(File(), Folder().Path() / "old");

    ASSERT_TRUE(Settings().Set("Language", "en"));

    EXPECT_EQ(Folder().Read("old"), "[Settings]\nLanguage=de\n");
    EXPECT_NE(InodeOf(File()), InodeOf(Folder().Path() / "old"));
}

TEST_F(KtConfigurationTest, LinksInACircleAreRefused)
{
    fs::create_symlink("other.ini", File());
    fs::create_symlink("plcdebug.ini", Folder().Path() / "other.ini");

    EXPECT_EQ(Get("Language"), std::nullopt);
    EXPECT_FALSE(Settings().Set("Language", "en"));

    EXPECT_TRUE(fs::is_symlink(File()));
    EXPECT_TRUE(fs::is_symlink(Folder().Path() / "other.ini"));
}

TEST_F(KtConfigurationTest, AFullDiskLosesNothing)
{
    const std::string old = "[Settings]\nLanguage=de\n" + std::string(1000, ';') + "\n";
    Write(old);
    {
        const FullDisk disk(500);
        EXPECT_FALSE(Settings().Set("Language", "en"));
    }

    EXPECT_EQ(Read(), old);
    EXPECT_THAT(Folder().Names(), ElementsAre("plcdebug.ini"));
}

TEST_F(KtConfigurationTest, AReadOnlyDirectoryLosesNothing)
{
    Write("[Settings]\nLanguage=de\n");
    fs::permissions(File(), fs::perms::all);
    fs::permissions(Folder().Path(), static_cast<fs::perms>(0555));
    {
        const Unprivileged user;
        EXPECT_FALSE(Settings().Set("Language", "en"));
    }
    fs::permissions(Folder().Path(), fs::perms::all);

    EXPECT_EQ(Read(), "[Settings]\nLanguage=de\n");
    EXPECT_THAT(Folder().Names(), ElementsAre("plcdebug.ini"));
}

TEST_F(KtConfigurationTest, AWriteProtectedFileIsReadAndNotReplaced)
{
    Write("[Settings]\nLanguage=de\n");
    fs::permissions(File(), static_cast<fs::perms>(0444));
    {
        const Unprivileged user;
        EXPECT_EQ(Get("Language"), "de");
        EXPECT_FALSE(Settings().Set("Language", "en"));
    }

    EXPECT_EQ(Read(), "[Settings]\nLanguage=de\n");
}

TEST_F(KtConfigurationTest, AFileThatCannotBeReadIsNotReplacedByASingleKey)
{
    Write("[Settings]\nLanguage=de\n");
    fs::permissions(File(), static_cast<fs::perms>(0222));
    {
        const Unprivileged user;
        EXPECT_EQ(Get("Language"), std::nullopt);
        EXPECT_FALSE(Settings().Set("PLCLastFile", "/a.plc"));
    }
    fs::permissions(File(), fs::perms::all);

    EXPECT_EQ(Read(), "[Settings]\nLanguage=de\n");
}

TEST_F(KtConfigurationTest, AMissingDirectoryIsNotCreated)
{
    KtConfiguration settings(
        "Settings", "", wxString((Folder().Path() / "no/plcdebug.ini").native()));
    wxString value;

    EXPECT_FALSE(settings.Get("Language", value));
    EXPECT_FALSE(settings.Set("Language", "en"));

    EXPECT_THAT(Folder().Names(), ElementsAre());
}

TEST_F(KtConfigurationTest, ADirectoryOrAPipeInPlaceOfTheFileStays)
{
    fs::create_directory(File());
    EXPECT_EQ(Get("Language"), std::nullopt);
    EXPECT_FALSE(Settings().Set("Language", "en"));
    EXPECT_TRUE(fs::is_directory(File()));

    fs::remove(File());
    ASSERT_EQ(::mkfifo(File().c_str(), S_IRUSR | S_IWUSR), 0);
    EXPECT_EQ(Get("Language"), std::nullopt);
    EXPECT_FALSE(Settings().Set("Language", "en"));
    EXPECT_TRUE(fs::is_fifo(File()));
}
