#include "test_ktconfiguration.h"

#include <gmock/gmock.h>

namespace fs = std::filesystem;
using testing::ElementsAre;

TEST_F(KtConfigurationTest, ReadsTheKeysOfItsSection)
{
    Write("Language=root\n[Other]\nLanguage=fr\n[Settings]\n; comment\nLanguage=de\n"
          "LanguagePath = /opt/machine/languages\nPLCLastFile=/home/müller/line 1.plc\n");

    EXPECT_EQ(Get("Language"), "de");
    EXPECT_EQ(Get("LanguagePath"), "/opt/machine/languages");
    EXPECT_EQ(Get("PLCLastFile"), wxString(L"/home/m\u00fcller/line 1.plc"));
}

TEST_F(KtConfigurationTest, AMissingKeyLeavesTheValueAsItWas)
{
    wxString value = "before";

    EXPECT_FALSE(Settings().Get("Language", value)) << "no file";
    Write("[Other]\nLanguage=fr\n");
    EXPECT_FALSE(Settings().Get("Language", value)) << "no section";
    Write("[Settings]\nLanguagePath=/x\n");
    EXPECT_FALSE(Settings().Get("Language", value)) << "no key";

    EXPECT_EQ(value, "before");
}

TEST_F(KtConfigurationTest, AnEmptyValueIsAValue)
{
    Write("[Settings]\nLanguage=\n");

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

    EXPECT_EQ(Read(), "[Settings]\nPLCLastFile=/a/b.plc\n");
    EXPECT_THAT(Folder().Names(), ElementsAre("plcdebug.ini"));
}

TEST_F(KtConfigurationTest, SetChangesItsOwnLineOnly)
{
    Write("; written by the host\n[Host]\nCycle = 10 ; ms\n\n[Settings]\n# texts\nLanguage=de\n"
          "PLCLastFile=/old.plc\nnonsense\n\n; end of settings\n[Zoo]\npath=\"$HOME\\\\x \"\n");

    ASSERT_TRUE(Settings().Set("PLCLastFile", "/new.plc"));

    EXPECT_EQ(
        Read(),
        "; written by the host\n[Host]\nCycle = 10 ; ms\n\n[Settings]\n# texts\nLanguage=de\n"
        "PLCLastFile=/new.plc\nnonsense\n\n; end of settings\n[Zoo]\npath=\"$HOME\\\\x \"\n");
}

TEST_F(KtConfigurationTest, AValueThatIsThereAlreadyIsNotWritten)
{
    Write("[Settings]\nLanguage=de\n\n[Host]\n");
    fs::create_hard_link(File(), Folder().File("same"));

    EXPECT_TRUE(Settings().Set("Language", "de"));
    EXPECT_TRUE(fs::equivalent(File(), Folder().File("same")));

    EXPECT_TRUE(Settings().Set("Language", "en"));
    EXPECT_FALSE(fs::equivalent(File(), Folder().File("same")));
}

TEST_F(KtConfigurationTest, SetSeesWhatTheHostHasWrittenInTheMeantime)
{
    KtConfiguration settings = Settings();
    ASSERT_TRUE(settings.Set("PLCLastFile", "/a.plc"));
    Write("[Settings]\nLanguage=en\n");

    ASSERT_TRUE(settings.Set("PLCLastFile", "/b.plc"));

    EXPECT_EQ(Read(), "[Settings]\nLanguage=en\nPLCLastFile=/b.plc\n");
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

    EXPECT_EQ(Read(), "[Settings]\nA=C:\\\\new\nB=\" x\"\nC=ü\\n\n");
}

TEST_F(KtConfigurationTest, ARelativePathBelongsToTheDirectoryOfTheConstruction)
{
    const fs::path before = fs::current_path();
    fs::current_path(Folder().Path());
    KtConfiguration settings("Settings", "", "plcdebug.ini");
    fs::current_path(before);

    ASSERT_TRUE(settings.Set("Language", "de"));

    EXPECT_EQ(Read(), "[Settings]\nLanguage=de\n");
}

TEST_F(KtConfigurationTest, ARelativePathInADirectoryThatIsGoneNamesNoFile)
{
    const fs::path before = fs::current_path();
    fs::create_directory(Folder().Path() / "gone");
    fs::current_path(Folder().Path() / "gone");
    fs::remove(Folder().Path() / "gone");
    KtConfiguration settings("Settings", "", "plcdebug.ini");
    fs::current_path(before);

    wxString value;
    EXPECT_FALSE(settings.Get("Language", value));
    EXPECT_FALSE(settings.Set("Language", "de"));
}

TEST_F(KtConfigurationTest, ALogThatWasOffBeforeStaysOff)
{
    Write("[Settings]\nnonsense\n");
    {
        const wxLogNull off;
        Get("Language");
        EXPECT_FALSE(wxLog::IsEnabled());
    }
    EXPECT_TRUE(wxLog::IsEnabled());
}
