#include "filelimits.h"
#include "tempdir.h"
#include "toolkitwitness.h"

#include <ktcore/ktintllanguagetext.h>

#include <gmock/gmock.h>

#include <limits>
#include <optional>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using Text = std::optional<std::wstring>;

constexpr int section = 48;
constexpr int frameTitle = 49;
constexpr wchar_t builtInTitle[] = L"PLC debugger";

/// Remembers how a full number was split.
class SplitText : public KtIntlLanguageText
{
public:
    using KtIntlLanguageText::GetText;

    const wchar_t* GetText(int sectionNumber, int entry) override
    {
        split = {sectionNumber, entry};
        return L"text";
    }

    std::pair<int, int> split;
};

std::pair<int, int> SplitOf(int id)
{
    SplitText text;
    EXPECT_STREQ(text.GetText(id), L"text");
    return text.split;
}

class KtIntlLanguageTextTest : public WitnessedTest
{
public:
    KtIntlLanguageTextImp& Service() { return m_service; }

    const TempDir& Folder() const { return m_folder; }

    void Use(const fs::path& path, const wchar_t* language)
    {
        m_service.SetFilePath(path.wstring().c_str());
        m_service.SetLanguage(language);
    }

    /// Loads a language file with this content.
    void Load(const std::string& content)
    {
        m_folder.Write("de.lng", content);
        Use(m_folder.Path(), L"de");
    }

    Text TextOf(int entry, int ofSection = section)
    {
        const wchar_t* text = m_service.GetText(ofSection, entry);
        return text != nullptr ? Text(text) : std::nullopt;
    }

private:
    const TempDir m_folder;
    KtIntlLanguageTextImp m_service;
};

} // namespace

TEST(KtIntlLanguageText, AFullNumberIsSplitIntoSectionAndEntry)
{
    EXPECT_EQ(SplitOf(4800049), std::pair(48, 49));
    EXPECT_EQ(SplitOf(4800000), std::pair(48, 0));
    EXPECT_EQ(SplitOf(99999), std::pair(0, 99999));
    EXPECT_EQ(SplitOf(1), std::pair(0, 1));
    EXPECT_EQ(SplitOf(std::numeric_limits<int>::max()), std::pair(21474, 83647));
}

TEST(KtIntlLanguageText, ANegativeNumberKeepsItsSignInTheEntry)
{
    EXPECT_EQ(SplitOf(-4800049), std::pair(48, -49));
    EXPECT_EQ(SplitOf(-4800000), std::pair(48, 0));
    EXPECT_EQ(SplitOf(-1), std::pair(0, -1));
    EXPECT_EQ(SplitOf(std::numeric_limits<int>::min()), std::pair(21474, -83648));
}

TEST(KtIntlLanguageText, ZeroIsSectionZeroEntryZero)
{
    EXPECT_EQ(SplitOf(0), std::pair(0, 0));
}

TEST_F(KtIntlLanguageTextTest, ReadsTheFileOfTheLanguage)
{
    Folder().Write("de.lng", "; Kommentar\n[12]\n49=andere\n\n[48]\n49=SPS-Debugger\n");
    Folder().Write("fr.lng", "[48]\n49=Débogueur\n");

    Use(Folder().Path(), L"de");
    EXPECT_EQ(TextOf(frameTitle), L"SPS-Debugger");
    EXPECT_EQ(TextOf(frameTitle, 12), L"andere");
    Service().SetLanguage(L"fr");

    EXPECT_EQ(TextOf(frameTitle), L"D\u00e9bogueur");
    EXPECT_EQ(TextOf(frameTitle, 12), std::nullopt);
}

TEST_F(KtIntlLanguageTextTest, FindsATextByItsFullNumber)
{
    Load("[48]\n49=title\n-49=negative\n");

    EXPECT_STREQ(Service().GetText(4800049), L"title");
    EXPECT_STREQ(Service().GetText(-4800049), L"negative");
    EXPECT_EQ(Service().GetText(4800050), nullptr);
    EXPECT_EQ(Service().GetText(0), nullptr);
    EXPECT_EQ(Service().GetText(std::numeric_limits<int>::min()), nullptr);
}

TEST_F(KtIntlLanguageTextTest, EscapesAndQuotesAreUndone)
{
    Load("[48]\n1=two\\nlines\n2=a\\\\b\n3=\"  blanks \"\n4=a \"name\"\n5=$HOME 50% %d\n"
         "6 =  trimmed in front\n7=a;b\n8=a=b\n");

    EXPECT_EQ(TextOf(1), L"two\nlines");
    EXPECT_EQ(TextOf(2), L"a\\b");
    EXPECT_EQ(TextOf(3), L"  blanks ");
    EXPECT_EQ(TextOf(4), L"a \"name\"");
    EXPECT_EQ(TextOf(5), L"$HOME 50% %d");
    EXPECT_EQ(TextOf(6), L"trimmed in front");
    EXPECT_EQ(TextOf(7), L"a;b");
    EXPECT_EQ(TextOf(8), L"a=b");
}

TEST_F(KtIntlLanguageTextTest, AnEmptyTextExistsAndALackingOneDoesNot)
{
    Load("[48]\n49=\n");

    EXPECT_EQ(TextOf(frameTitle), L"");
    EXPECT_EQ(TextOf(1), std::nullopt) << "taken from the built-in texts";
}

TEST_F(KtIntlLanguageTextTest, AFileWithoutATextOfTheDebuggerServesLikeNone)
{
    for (const char* content : {"[48]\n", "[47]\n49=title\n", "[48]\nx=1\n[49]\n1=x\n"}) {
        Load(content);

        EXPECT_EQ(TextOf(frameTitle), builtInTitle) << content;
    }
}

TEST_F(KtIntlLanguageTextTest, NamesThatAreNoNumbersAreNoTexts)
{
    Load("[48]\nx=1\n4x=1\n+4=1\n=1\n99999999999=1\n4.0=1\n49=title\n[48x]\n5=1\n[48/2]\n6=1\n"
         "[999999999999]\n7=1\n");

    EXPECT_EQ(TextOf(frameTitle), L"title");
    for (const int entry : {0, 1, 2, 4, 5, 6, 7}) {
        EXPECT_EQ(TextOf(entry), std::nullopt) << entry;
    }
}

TEST_F(KtIntlLanguageTextTest, ADamagedFileIsReadAsFarAsItGoes)
{
    const std::vector<std::string> files = {
        "[48]\n1=a\n[12]\n2=b\n[48]\n49=title\n",
        "[48]\n49=first\n49=title\n",
        "[48]\n49=title\n[unclosed\n",
        "[48] rest\n49=title\n",
        "[48]\nno equals sign\n=\n= x\n\\\n49=title",
        "[48]\n49=title\n1=\\\n2=\\q\n3=\"open\n",
        "[48]\r\n49=title\r\n",
        "\xef\xbb\xbf[48]\n49=title\n",
        "[]\n[..]\n[/]\n[48]\n49=title\n[a/../b]\n",
        "[48]\n49=title\n\x01\xff\xfe\x80\n"};
    for (const std::string& file : files) {
        Load(file);

        EXPECT_EQ(TextOf(frameTitle), L"title") << file;
        EXPECT_EQ(TextOf(50), std::nullopt) << file;
    }
}

TEST_F(KtIntlLanguageTextTest, TheBuiltInTextsServeBeforeAnythingIsSet)
{
    EXPECT_EQ(TextOf(frameTitle), builtInTitle);
    EXPECT_EQ(TextOf(frameTitle, 1), std::nullopt);
}

TEST_F(KtIntlLanguageTextTest, TheBuiltInTextsServeWithoutPathOrLanguage)
{
    Load("[48]\n49=from the file\n");
    Folder().Write(".lng", "[48]\n49=without a name\n");

    const std::wstring fromTheRoot = Folder().Path().relative_path().wstring() + L"/de";

    Use("", L"de");
    EXPECT_EQ(TextOf(frameTitle), builtInTitle);
    Use("", fromTheRoot.c_str());
    EXPECT_EQ(TextOf(frameTitle), builtInTitle);
    Use(Folder().Path(), L"");
    EXPECT_EQ(TextOf(frameTitle), builtInTitle);
    Service().SetFilePath(nullptr);
    Service().SetLanguage(nullptr);
    EXPECT_EQ(TextOf(frameTitle), builtInTitle);
    Use(Folder().Path(), L"de");
    EXPECT_EQ(TextOf(frameTitle), L"from the file") << "the file is back";
}

TEST_F(KtIntlLanguageTextTest, TheBuiltInTextsServeWhenNoFileCanBeRead)
{
    fs::create_directory(Folder().Path() / "directory.lng");
    ASSERT_EQ(::mkfifo((Folder().Path() / "pipe.lng").c_str(), S_IRUSR | S_IWUSR), 0);
    fs::create_symlink("nowhere", Folder().Path() / "dangling.lng");
    Folder().Write("file", "");
    for (const wchar_t* language :
         {L"missing", L"directory", L"pipe", L"dangling", L"../x", L"a/b"}) {
        Use(Folder().Path(), language);
        EXPECT_EQ(TextOf(frameTitle), builtInTitle) << language;
    }
    for (const char* path : {"no/such/directory", "file"}) {
        Use(Folder().Path() / path, L"de");
        EXPECT_EQ(TextOf(frameTitle), builtInTitle) << path;
    }
}

TEST_F(KtIntlLanguageTextTest, TheBuiltInTextsServeWhenTheFileMustNotBeRead)
{
    Folder().Write("de.lng", "[48]\n49=secret\n");
    fs::permissions(Folder().Path() / "de.lng", fs::perms::none);
    const Unprivileged user;

    Use(Folder().Path(), L"de");

    EXPECT_EQ(TextOf(frameTitle), builtInTitle);
}

TEST_F(KtIntlLanguageTextTest, TheBuiltInTextsServeWhenTheFileHasNoSection)
{
    for (const std::string file :
         {"", "\n", "49=title\n", "[48\n49=title\n", "\xff\xff", "\177ELF"}) {
        Load(file);

        EXPECT_EQ(TextOf(frameTitle), builtInTitle) << file;
    }
}

TEST_F(KtIntlLanguageTextTest, ATextStaysWhereItIsUntilTheLanguageIsSetAgain)
{
    Load("[48]\n49=title\n50=other\n");
    const wchar_t* text = Service().GetText(section, frameTitle);

    fs::remove(Folder().Path() / "de.lng");
    TextOf(50);
    TextOf(-1);

    EXPECT_EQ(Service().GetText(section, frameTitle), text);
    EXPECT_STREQ(text, L"title");
}

TEST_F(KtIntlLanguageTextTest, SettingTheSameLanguageAgainReadsTheFileAgain)
{
    Load("[48]\n49=old\n");
    EXPECT_EQ(TextOf(frameTitle), L"old");
    Folder().Write("de.lng", "[48]\n49=new\n");
    EXPECT_EQ(TextOf(frameTitle), L"old");

    Service().SetLanguage(L"de");

    EXPECT_EQ(TextOf(frameTitle), L"new");
}

TEST_F(KtIntlLanguageTextTest, ARelativePathBelongsToTheDirectoryAtTheTimeOfSetting)
{
    Folder().Write("de.lng", "[48]\n49=here\n");
    const fs::path before = fs::current_path();
    fs::current_path(Folder().Path());
    Use(".", L"de");
    fs::current_path(before);

    EXPECT_EQ(TextOf(frameTitle), L"here");
}
