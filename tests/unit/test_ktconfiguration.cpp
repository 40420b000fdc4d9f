#include "test_kt_support.h"

#include <ktcore/ktconfiguration.h>

#include <gmock/gmock.h>

#include <optional>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class KtConfigurationTest : public testing::Test
{
public:
    KtConfiguration Settings() const { return {"Settings", "", wxString(m_file.native())}; }

    std::optional<wxString> Get(const wxString& key) const
    {
        wxString value;
        return Settings().Get(key, value) ? std::optional(value) : std::nullopt;
    }

    const TemporaryFolder& Folder() const { return m_folder; }

    const fs::path& File() const { return m_file; }

    ToolkitWitness& Witness() { return m_witness; }

protected:
    void TearDown() override
    {
        EXPECT_EQ(m_witness.Complaints(), 0) << "shown to the operator";
        EXPECT_TRUE(m_witness.Listens()) << "log or assert handler not restored";
    }

private:
    ToolkitWitness m_witness;
    TemporaryFolder m_folder;
    fs::path m_file = m_folder / "plcdebug.ini";
};

ino_t InodeOf(const fs::path& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

TEST_F(KtConfigurationTest, ReadsTheKeysOfItsSection)
{
    WriteFile(
        File(),
        "Language=root\n[Other]\nLanguage=fr\n[Settings]\n; comment\nLanguage=de\n"
        "LanguagePath = /opt/machine/languages\nPLCLastFile=/home/müller/line 1.plc\n");

    EXPECT_EQ(Get("Language"), "de");
    EXPECT_EQ(Get("LanguagePath"), "/opt/machine/languages");
    EXPECT_EQ(Get("PLCLastFile"), wxString(L"/home/m\u00fcller/line 1.plc"));
}

TEST_F(KtConfigurationTest, AMissingKeyLeavesTheValueAsItWas)
{
    wxString value = "before";

    EXPECT_FALSE(Settings().Get("Language", value)) << "no file";
    WriteFile(File(), "[Other]\nLanguage=fr\n");
    EXPECT_FALSE(Settings().Get("Language", value)) << "no section";
    WriteFile(File(), "[Settings]\nLanguagePath=/x\n");
    EXPECT_FALSE(Settings().Get("Language", value)) << "no key";

    EXPECT_EQ(value, "before");
}

TEST_F(KtConfigurationTest, AnEmptyValueIsAValue)
{
    WriteFile(File(), "[Settings]\nLanguage=\n");

    EXPECT_EQ(Get("Language"), "");
}

TEST_F(KtConfigurationTest, AnEmptyFileNameHasNoKeysAndTakesNone)
{
    KtConfiguration nowhere("Settings", "", "");
    wxString value;

    EXPECT_FALSE(nowhere.Get("Language", value));
    EXPECT_FALSE(nowhere.Set("Language", "de"));
}

TEST_F(KtConfigurationTest, ASubsectionIsASectionOfItsOwn)
{
    KtConfiguration colours("Settings", "Colours", wxString(File().native()));
    wxString value;

    ASSERT_TRUE(colours.Set("Language", "blue"));

    EXPECT_TRUE(colours.Get("Language", value));
    EXPECT_EQ(value, "blue");
    EXPECT_EQ(Get("Language"), std::nullopt);
}

TEST_F(KtConfigurationTest, SetCreatesTheFileAndWritesThroughAtOnce)
{
    KtConfiguration settings = Settings();

    ASSERT_TRUE(settings.Set("PLCLastFile", "/a/b.plc"));

    EXPECT_EQ(ReadFile(File()), "[Settings]\nPLCLastFile=/a/b.plc\n");
    EXPECT_THAT(Folder().FileNames(), ElementsAre("plcdebug.ini"));
}

TEST_F(KtConfigurationTest, SetChangesItsOwnLineOnly)
{
    WriteFile(
        File(),
        "; written by the host\n[Host]\nCycle = 10 ; ms\n\n[Settings]\n# texts\nLanguage=de\n"
        "PLCLastFile=/old.plc\nnonsense\n\n; end of settings\n[Zoo]\npath=\"$HOME\\\\x \"\n");

    ASSERT_TRUE(Settings().Set("PLCLastFile", "/new.plc"));

    EXPECT_EQ(
        ReadFile(File()),
        "; written by the host\n[Host]\nCycle = 10 ; ms\n\n[Settings]\n# texts\nLanguage=de\n"
        "PLCLastFile=/new.plc\nnonsense\n\n; end of settings\n[Zoo]\npath=\"$HOME\\\\x \"\n");
}

TEST_F(KtConfigurationTest, SetSeesWhatTheHostHasWrittenInTheMeantime)
{
    KtConfiguration settings = Settings();
    ASSERT_TRUE(settings.Set("PLCLastFile", "/a.plc"));
    WriteFile(File(), "[Settings]\nLanguage=en\n");

    ASSERT_TRUE(settings.Set("PLCLastFile", "/b.plc"));

    EXPECT_EQ(ReadFile(File()), "[Settings]\nLanguage=en\nPLCLastFile=/b.plc\n");
}

TEST_F(KtConfigurationTest, EveryValueComesBackAsItWasSet)
{
    const std::vector<const wchar_t*> values = {
        L"",
        L" ",
        L"\t",
        L" in front",
        L"behind ",
        L" both ",
        L"tab\t",
        L"C:\\new",
        L"ends in \\",
        L"\\",
        L"50%",
        L"%d%s%n",
        L"$HOME",
        L"${HOME}",
        L"$(HOME)",
        L"a\nb",
        L"a\r\nb",
        L"\"quoted\"",
        L"\"",
        L"a\"b",
        L"ends in \"",
        L"\"a\" b",
        L"x=y",
        L"; no comment",
        L"a ; b",
        L"# number",
        L"[section]",
        L"!bang",
        L"/home/x/a b.plc",
        L"\u00e4\u00f6\u00fc\u00df",
        L"\u20ac \u65e5\u672c",
        L"\u00a0",
        L"\\n",
        L"\\\\server\\share"};
    KtConfiguration settings = Settings();
    for (const wchar_t* value : values) {
        SCOPED_TRACE(wxString(value).utf8_string());

        ASSERT_TRUE(settings.Set("Other", "stays"));
        ASSERT_TRUE(settings.Set("PLCLastFile", value));

        EXPECT_EQ(Get("PLCLastFile"), wxString(value));
        EXPECT_EQ(Get("Other"), "stays");
    }
}

TEST_F(KtConfigurationTest, ValuesAreEscapedAsTheFileFormatSays)
{
    ASSERT_TRUE(Settings().Set("A", "C:\\new"));
    ASSERT_TRUE(Settings().Set("B", " x"));
    ASSERT_TRUE(Settings().Set("C", wxString(L"\u00fc\n")));

    EXPECT_EQ(ReadFile(File()), "[Settings]\nA=C:\\\\new\nB=\" x\"\nC=ü\\n\n");
}

TEST_F(KtConfigurationTest, ARelativePathBelongsToTheDirectoryOfTheConstruction)
{
    const fs::path before = fs::current_path();
    fs::current_path(Folder().Path());
    KtConfiguration settings("Settings", "", "plcdebug.ini");
    fs::current_path(before);

    ASSERT_TRUE(settings.Set("Language", "de"));

    EXPECT_EQ(ReadFile(File()), "[Settings]\nLanguage=de\n");
}

TEST_F(KtConfigurationTest, ARelativePathInADirectoryThatIsGoneNamesNoFile)
{
    const fs::path before = fs::current_path();
    fs::create_directory(Folder() / "gone");
    fs::current_path(Folder() / "gone");
    fs::remove(Folder() / "gone");
    KtConfiguration settings("Settings", "", "plcdebug.ini");
    fs::current_path(before);

    wxString value;
    EXPECT_FALSE(settings.Get("Language", value));
    EXPECT_FALSE(settings.Set("Language", "de"));
}

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
        WriteFile(File(), file);

        EXPECT_EQ(Get("Operator"), wxString(L"M\u00fcller")) << file;
        ASSERT_TRUE(Settings().Set("Language", "de"));

        EXPECT_EQ(ReadFile(File()), "[Settings]\nOperator=Müller\nLanguage=de\n");
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
        WriteFile(File(), file);

        EXPECT_EQ(Get("Language"), "de");
        ASSERT_TRUE(Settings().Set("PLCLastFile", "/a.plc"));
        EXPECT_EQ(Get("PLCLastFile"), "/a.plc");
        EXPECT_EQ(Get("Language"), "de");
        EXPECT_GE(ReadFile(File()).size(), file.size()) << "Set has lost a line";
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
        WriteFile(File(), file);

        EXPECT_EQ(Get("Language"), std::nullopt);
        ASSERT_TRUE(Settings().Set("Language", "en"));

        EXPECT_EQ(Get("Language"), "en");
    }
}

TEST_F(KtConfigurationTest, AFileWithZeroBytesIsReadAndNotReplaced)
{
    const std::string file("[Settings]\nLanguage=de\n[Other]\nA=1\0\0\n", 38);
    WriteFile(File(), file);

    EXPECT_FALSE(Settings().Set("PLCLastFile", "/list.plc"));

    EXPECT_EQ(Get("Language"), "de");
    EXPECT_EQ(ReadFile(File()), file);
}

TEST_F(KtConfigurationTest, AKeyThatTheFileMarksAsFixedIsNotChanged)
{
    WriteFile(File(), "[Settings]\n!Language=de\n");

    EXPECT_FALSE(Settings().Set("Language", "en"));

    EXPECT_EQ(Get("Language"), "de");
    EXPECT_EQ(ReadFile(File()), "[Settings]\n!Language=de\n");
}

TEST_F(KtConfigurationTest, TheOldFileIsReplacedAndNeverWrittenInto)
{
    WriteFile(File(), "[Settings]\nLanguage=de\n");
    fs::create_hard_link(File(), Folder() / "old");

    ASSERT_TRUE(Settings().Set("Language", "en"));

    EXPECT_EQ(ReadFile(Folder() / "old"), "[Settings]\nLanguage=de\n");
    EXPECT_NE(InodeOf(File()), InodeOf(Folder() / "old"));
}

TEST_F(KtConfigurationTest, LinksInACircleAreRefused)
{
    fs::create_symlink("other.ini", File());
    fs::create_symlink("plcdebug.ini", Folder() / "other.ini");

    EXPECT_EQ(Get("Language"), std::nullopt);
    EXPECT_FALSE(Settings().Set("Language", "en"));

    EXPECT_TRUE(fs::is_symlink(File()));
    EXPECT_TRUE(fs::is_symlink(Folder() / "other.ini"));
}

TEST_F(KtConfigurationTest, AFullDiskLosesNothing)
{
    const std::string old = "[Settings]\nLanguage=de\n" + std::string(1000, ';') + "\n";
    WriteFile(File(), old);
    {
        const FullDisk disk(500);
        EXPECT_FALSE(Settings().Set("Language", "en"));
    }

    EXPECT_EQ(ReadFile(File()), old);
    EXPECT_THAT(Folder().FileNames(), ElementsAre("plcdebug.ini"));
}

TEST_F(KtConfigurationTest, AReadOnlyDirectoryLosesNothing)
{
    WriteFile(File(), "[Settings]\nLanguage=de\n");
    fs::permissions(File(), fs::perms::all);
    fs::permissions(Folder().Path(), static_cast<fs::perms>(0555));
    {
        const Unprivileged user;
        EXPECT_FALSE(Settings().Set("Language", "en"));
    }
    fs::permissions(Folder().Path(), fs::perms::all);

    EXPECT_EQ(ReadFile(File()), "[Settings]\nLanguage=de\n");
    EXPECT_THAT(Folder().FileNames(), ElementsAre("plcdebug.ini"));
}

TEST_F(KtConfigurationTest, AWriteProtectedFileIsReadAndNotReplaced)
{
    WriteFile(File(), "[Settings]\nLanguage=de\n");
    fs::permissions(File(), static_cast<fs::perms>(0444));
    {
        const Unprivileged user;
        EXPECT_EQ(Get("Language"), "de");
        EXPECT_FALSE(Settings().Set("Language", "en"));
    }

    EXPECT_EQ(ReadFile(File()), "[Settings]\nLanguage=de\n");
}

TEST_F(KtConfigurationTest, AFileThatCannotBeReadIsNotReplacedByASingleKey)
{
    WriteFile(File(), "[Settings]\nLanguage=de\n");
    fs::permissions(File(), static_cast<fs::perms>(0222));
    {
        const Unprivileged user;
        EXPECT_EQ(Get("Language"), std::nullopt);
        EXPECT_FALSE(Settings().Set("PLCLastFile", "/a.plc"));
    }
    fs::permissions(File(), fs::perms::all);

    EXPECT_EQ(ReadFile(File()), "[Settings]\nLanguage=de\n");
}

TEST_F(KtConfigurationTest, AMissingDirectoryIsNotCreated)
{
    KtConfiguration settings("Settings", "", wxString((Folder() / "no/plcdebug.ini").native()));
    wxString value;

    EXPECT_FALSE(settings.Get("Language", value));
    EXPECT_FALSE(settings.Set("Language", "en"));

    EXPECT_THAT(Folder().FileNames(), ElementsAre());
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

TEST_F(KtConfigurationTest, ALogThatWasOffBeforeStaysOff)
{
    WriteFile(File(), "[Settings]\nnonsense\n");
    {
        const wxLogNull off;
        Get("Language");
        EXPECT_FALSE(wxLog::IsEnabled());
    }
    EXPECT_TRUE(wxLog::IsEnabled());
}
