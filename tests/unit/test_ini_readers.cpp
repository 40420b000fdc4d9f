#include "ini.h"
#include "tempdir.h"
#include "toolkitwitness.h"

#include <ktcore/ktconfiguration.h>

#include <gmock/gmock.h>

#include <optional>

// The debugger reads its configuration by the toolkit's class, the host writes into the same file
// by code of its own: what the one writes, the other means.

namespace {

using testing::Optional;

const char* const fileName = "plcdebug.ini";

struct IniReaders : testing::Test
{
    /// The value that both see in a file.
    std::optional<std::string> ValueIn(const std::string& text, const std::string& key = "Language")
    {
        folder.Write(fileName, text);
        const auto ours = base::IniValue(text, "Settings", key);
        wxString value;
        const bool isThere = Settings().Get(wxString::FromUTF8(key), value);
        EXPECT_EQ(ours, isThere ? std::optional(value.utf8_string()) : std::nullopt) << text;
        return ours;
    }

    KtConfiguration Settings() const { return {"Settings", "", wxString(folder.File(fileName))}; }

    ToolkitWitness toolkit;
    const TempDir folder;
};

const std::vector<std::string>& Values()
{
    static const std::vector<std::string> values = {
        "",
        " ",
        "\t",
        " in front",
        "behind ",
        "tab\t",
        "C:\\new",
        "ends in \\",
        "\\",
        "50% of $HOME",
        "a\nb",
        "a\r\nb",
        "\"quoted\"",
        "\"",
        "a\"b",
        "\"a\" b",
        "x=y",
        "; no comment",
        "a ; b",
        "# number",
        "[section]",
        "!bang",
        "/opt/müller/a b",
        "€ 日本",
        "\\n",
        "\\\\server\\share"};
    return values;
}

} // namespace

TEST_F(IniReaders, AgreeOnWhatTheHostWrites)
{
    for (const std::string& value : Values()) {
        const std::string text = base::WithIniValue("[Host]\nx=1\n", "Settings", "Language", value);

        EXPECT_THAT(ValueIn(text), Optional(value));
    }
}

TEST_F(IniReaders, AgreeOnWhatTheDebuggerWrites)
{
    for (const std::string& value : Values()) {
        folder.Write(fileName, "[Host]\nx=1\n");
        ASSERT_TRUE(Settings().Set("Language", wxString::FromUTF8(value)));

        EXPECT_THAT(ValueIn(folder.Read(fileName)), Optional(value));
    }
}

TEST_F(IniReaders, AgreeOnLinesThatPeopleWrite)
{
    for (const char* line :
         {"Language=de",
          "LANGUAGE = de",
          "  language\t=\tde",
          "Language=de ; no comment",
          "Language=\"de\"",
          "Language=\"de",
          "Language=d\\qe",
          "Language=\"d\"e\"",
          "Language=de\\",
          "Language=  de  ",
          "Lan\\guage=de",
          "Language\\==de",
          "Language",
          "Language de",
          "=de",
          ";Language=de",
          "  #Language=de",
          "!Language=de",
          "!Language=de\nLanguage=fr",
          "Language=de\n!Language=fr",
          "Language=fr\nLanguage=de",
          "[Settings\nLanguage=de",
          "[Other]\nLanguage=de",
          "[Other]\n[SETTINGS]\nLanguage=de",
          "[Other] [Settings]\nLanguage=de",
          "[Set\\tings] ; again\nLanguage=de",
          "[Settings] rest\nLanguage=de",
          "[]\nLanguage=de"}) {
        ValueIn(std::string("Language=root\n[Settings]\nOther=1\n") + line + "\n");
    }
}

TEST_F(IniReaders, AgreeOnEveryEncodingAndLineEnd)
{
    for (const std::string& text :
         {std::string("\xef\xbb\xbf[Settings]\nLanguage=M\xc3\xbcller\n"),
          std::string("[Settings]\r\nLanguage=M\xc3\xbcller\r\n"),
          std::string("[Settings]\rLanguage=M\xc3\xbcller"),
          std::string("[Settings]\nLanguage=M\xfcller\n"),
          std::string(
              "\xff\xfe[\0S\0e\0t\0t\0i\0n\0g\0s\0]\0\n\0L\0a\0n\0g\0u\0a\0g\0e\0=\0"
              "M\0\xfc\0l\0l\0e\0r\0",
              54),
          std::string(
              "\xfe\xff\0[\0S\0e\0t\0t\0i\0n\0g\0s\0]\0\n\0L\0a\0n\0g\0u\0a\0g\0e\0=\0"
              "M\0\xfc\0l\0l\0e\0r",
              54)}) {
        EXPECT_THAT(ValueIn(text), Optional(std::string("M\xc3\xbcller")));
    }
    EXPECT_THAT(
        ValueIn(std::string(
            "\xff\xfe[\0S\0e\0t\0t\0i\0n\0g\0s\0]\0\n\0L\0a\0n\0g\0u\0a\0g\0e\0=\0"
            "\x3d\xd8\0\xde",
            46)),
        Optional(std::string("\xf0\x9f\x98\x80")));
}

TEST_F(IniReaders, AgreeOnDamagedFiles)
{
    const std::string full(100000, 'x');
    for (const std::string& text :
         {std::string(),
          std::string("\n"),
          std::string("["),
          std::string("="),
          std::string("Language=de\n"),
          std::string("[Settings]\n[Settings]\n[Settings]\nLanguage=de\n"),
          std::string("[Settings]\nno equals sign\nLanguage=de\n= no key\n=\n"),
          std::string("[Settings]\nLanguage=de\n[Unclosed\nA=1\n"),
          std::string("[Settings]\nLanguage=de\nOdd=\\q\nOpen=\"never closed\nBroken\\\n\\"),
          std::string("[]\nA=1\n[..]\nB=2\n[/]\n[Settings]\nLanguage=de\n[a/../b]\n"),
          std::string("[Settings]\nLanguage=de\n\x01\x02\x7f\x1b[31m\xff\xfe\x80\n"),
          "[Settings]\nLanguage=de\n" + full + "\n[" + full + "]\n" + full + "=" + full + "\n",
          std::string("]]]]\n[[[[\n[[Settings]]\n[Settings]\nLanguage=de\n")}) {
        SCOPED_TRACE(text.substr(0, 100));
        const auto before = ValueIn(text);

        const std::string after = base::WithIniValue(text, "Settings", "PLCLastFile", "/a.plc");

        EXPECT_EQ(ValueIn(after), before);
        EXPECT_THAT(ValueIn(after, "PLCLastFile"), Optional(std::string("/a.plc")));
    }
}

TEST_F(IniReaders, AgreeThatAFixedKeyStays)
{
    const std::string text = "[Settings]\n!Language=de\n";
    folder.Write(fileName, text);

    EXPECT_FALSE(Settings().Set("Language", "en"));

    EXPECT_THAT(
        ValueIn(base::WithIniValue(text, "Settings", "Language", "en")),
        Optional(std::string("de")));
}
