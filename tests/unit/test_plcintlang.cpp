#include "numberedtexts.h"
#include "plcintlang.h"
#include "tempdir.h"

#include <gtest/gtest.h>

#include <climits>
#include <utility>

namespace {

/// Says which section and entry a full number was split into.
class SplitRecorder : public KtIntlLanguageText
{
public:
    using KtIntlLanguageText::GetText;

    const wchar_t* GetText(int section, int entry) override
    {
        asked = {section, entry};
        return nullptr;
    }

    std::pair<int, int> asked;
};

std::pair<int, int> SplitOf(int id)
{
    SplitRecorder recorder;
    EXPECT_EQ(recorder.GetText(id), nullptr);
    return recorder.asked;
}

class LanguageTexts : public testing::Test
{
protected:
    void Load() const
    {
        IntlLangImp().SetFilePath(wxString(dir.Path().c_str()).wc_str());
        IntlLangImp().SetLanguage(wxString(numberedLanguage).wc_str());
    }

    TempDir dir;
};

} // namespace

TEST(FullTextNumber, SplitsIntoSectionAndEntry)
{
    EXPECT_EQ(SplitOf(4800049), std::make_pair(48, 49));
}

TEST(FullTextNumber, GivesTheSignToTheEntry)
{
    EXPECT_EQ(SplitOf(-4800049), std::make_pair(48, -49));
}

TEST(FullTextNumber, OfZeroIsSectionZeroEntryZero)
{
    EXPECT_EQ(SplitOf(0), std::make_pair(0, 0));
}

TEST(FullTextNumber, SplitsTheSmallestNumberThatHasNoAbsoluteValue)
{
    EXPECT_EQ(SplitOf(INT_MIN), std::make_pair(21474, -83648));
}

TEST(FullTextNumber, OfSmallNumbersIsSectionZero)
{
    EXPECT_EQ(SplitOf(99999), std::make_pair(0, 99999));
    EXPECT_EQ(SplitOf(-99999), std::make_pair(0, -99999));
    EXPECT_EQ(SplitOf(100000), std::make_pair(1, 0));
}

TEST(LanguageService, IsOneObjectForLookingUpAndForSetting)
{
    EXPECT_EQ(&IntlLang(), &IntlLangImp());
    EXPECT_EQ(&IntlLang(), &IntlLang());
}

TEST_F(LanguageTexts, AreFoundByTheirNumber)
{
    WriteNumberedTexts(dir.Path());
    Load();

    EXPECT_EQ(LanguageText(TextId::FrameTitle), "T49");
    EXPECT_EQ(LanguageText(TextId::DbFamily64), "T109");
}

TEST_F(LanguageTexts, AreEmptyWhenTheFileLacksThem)
{
    WriteNumberedTexts(dir.Path(), {}, {49, 88, 92});
    Load();

    EXPECT_EQ(LanguageText(TextId::FrameTitle), "");
}

TEST_F(LanguageTexts, ShowNoArgumentWhenTheFileLacksThem)
{
    WriteNumberedTexts(dir.Path(), {}, {88, 92});
    Load();

    EXPECT_EQ(LanguageText(TextId::AddressRange, 64), "");
    EXPECT_EQ(LanguageText(TextId::FileUnreadable, wxString("/a/b.plc")), "");
}

TEST_F(LanguageTexts, AreFetchedAfreshEachTime)
{
    WriteNumberedTexts(dir.Path());
    Load();
    ASSERT_EQ(LanguageText(TextId::FrameTitle), "T49");

    WriteNumberedTexts(dir.Path(), {{49, "another title"}});
    Load();

    EXPECT_EQ(LanguageText(TextId::FrameTitle), "another title");
}

TEST_F(LanguageTexts, TakeTheirArgument)
{
    WriteNumberedTexts(dir.Path());
    Load();

    EXPECT_EQ(LanguageText(TextId::AddressRange, 64), "T88 64");
    EXPECT_EQ(LanguageText(TextId::FileUnreadable, wxString("/a/b.plc")), "T92 /a/b.plc");
}

// ---- Placeholders

namespace {

template <typename Argument> struct PlaceholderCase
{
    const char* name;
    wxString format;
    Argument argument;
    wxString result;
};

class NumberPlaceholder : public testing::TestWithParam<PlaceholderCase<int>>
{
};

class StringPlaceholder : public testing::TestWithParam<PlaceholderCase<const char*>>
{
};

const auto nameOfCase = [](const auto& info) { return std::string(info.param.name); };

} // namespace

TEST_P(NumberPlaceholder, GivesTheText)
{
    EXPECT_EQ(FillPlaceholder(GetParam().format, GetParam().argument), GetParam().result);
}

TEST_P(StringPlaceholder, GivesTheText)
{
    EXPECT_EQ(FillPlaceholder(GetParam().format, wxString(GetParam().argument)), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Texts,
    NumberPlaceholder,
    testing::ValuesIn(std::vector<PlaceholderCase<int>>{
        {"decimal", "at most %d bytes", 64, "at most 64 bytes"},
        {"alone", "%d", -128, "-128"},
        {"integer", "%i", 5, "5"},
        {"unsignedIsPrintedSigned", "%u", -1, "-1"},
        {"longDecimal", "%ld", INT_MAX, "2147483647"},
        {"smallest", "%d", INT_MIN, "-2147483648"},
        {"width", "<%5d>", 42, "<   42>"},
        {"leftAligned", "<%-5d>", 42, "<42   >"},
        {"leadingZeros", "<%05d>", 42, "<00042>"},
        {"plusSign", "<%+d>", 42, "<+42>"},
        {"percentSign", "100%% of %d", 7, "100% of 7"},
        {"percentSignAlone", "100%% sure", 7, "100% sure"},
        {"none", "too many variables", 20, "too many variables"},
        {"empty", "", 20, ""},
        {"stringForANumber", "at most %s bytes", 64, "at most %s bytes 64"},
        {"two", "%d of %d", 64, "%d of %d 64"},
        {"numberThenString", "%d %s", 64, "%d %s 64"},
        {"blankFlagMakesItAString", "100% sure %d", 64, "100% sure %d 64"},
        {"writesMemory", "%n", 64, "%n 64"},
        {"floatingPoint", "%f", 64, "%f 64"},
        {"positional", "%1$d", 64, "%1$d 64"},
        {"starWidth", "%*d", 64, "%*d 64"},
        {"unicode",
         wxString::FromUTF8("höchstens %d Bytes"),
         9,
         wxString::FromUTF8("höchstens 9 Bytes")},
    }),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    Texts,
    StringPlaceholder,
    testing::ValuesIn(std::vector<PlaceholderCase<const char*>>{
        {"string", "cannot read %s!", "/a/b", "cannot read /a/b!"},
        {"longString", "%ls", "/a/b", "/a/b"},
        {"capital", "%S", "/a/b", "/a/b"},
        {"width", "<%6s>", "/a/b", "<  /a/b>"},
        {"leftAligned", "<%-6s>", "/a/b", "</a/b  >"},
        {"argumentWithPercentSigns", "cannot read %s", "/a/%d%n", "cannot read /a/%d%n"},
        {"percentSign", "100%% %s", "/a", "100% /a"},
        {"none", "cannot read it", "/a/b", "cannot read it"},
        {"empty", "", "/a/b", ""},
        {"numberForAString", "cannot read %d", "/a/b", "cannot read %d /a/b"},
        {"two", "%s %s", "/a/b", "%s %s /a/b"},
        {"emptyArgument", "<%s>", "", "<>"},
    }),
    nameOfCase);

TEST(FillPlaceholder, WithAWidthBeyondReasonNeitherFillsTheMemoryNorLosesTheArgument)
{
    EXPECT_EQ(FillPlaceholder("%999999999d", 7), "%999999999d 7");
}

TEST(FillPlaceholder, WithALonePercentSignKeepsTheText)
{
    EXPECT_TRUE(FillPlaceholder("50 %", 7).StartsWith("50 %"));
}
