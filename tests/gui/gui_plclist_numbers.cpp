#include "plclist_numbers.h"

#include <gtest/gtest.h>
#include <wx/dcclient.h>
#include <wx/fontenum.h>
#include <wx/frame.h>

namespace {

/// A window whose texts are measured.
class NumberGlyphsTest : public testing::Test
{
public:
    ~NumberGlyphsTest() override { m_frame->Destroy(); }

protected:
    NumberGlyphs Learnt(const wxFont& font)
    {
        NumberGlyphs numbers;
        numbers.Learn(m_dc, font);
        m_dc.SetFont(font);
        return numbers;
    }

    wxFrame* m_frame = new wxFrame(nullptr, wxID_ANY, "texts");
    wxClientDC m_dc{m_frame};
};

} // namespace

TEST_F(NumberGlyphsTest, AreAsWideAsTheToolkitMeasuresThemInEveryFont)
{
    int fontsOfNumbers = 0;
    for (const wxString& face : wxFontEnumerator::GetFacenames()) {
        for (const double points : {7.5, 10.0, 20.0}) {
            const NumberGlyphs numbers = Learnt(wxFontInfo(points).FaceName(face));
            fontsOfNumbers += numbers.Width(L"0") ? 1 : 0;
            for (const wchar_t* text : {L"0", L"-2147483648", L"11.171", L"-0.000000", L"1.-7"}) {
                const int width = m_dc.GetTextExtent(text).x;
                EXPECT_EQ(numbers.Width(text).value_or(width), width) << face << " " << text;
            }
        }
    }
    EXPECT_GT(fontsOfNumbers, 0) << "the comparison compares nothing";
}

TEST_F(NumberGlyphsTest, HaveNoWidthForOtherTexts)
{
    const NumberGlyphs numbers = Learnt(wxFontInfo(10).FaceName("DejaVu Sans"));

    EXPECT_TRUE(numbers.Width(L"15"));
    for (const wchar_t* text : {L"", L"?", L"1e5", L"1 5", L"+1", L"\u0663", L"1\n5"}) {
        EXPECT_FALSE(numbers.Width(text)) << text;
    }
}

TEST_F(NumberGlyphsTest, OfAFontThatHasNotBeenLearntHaveNoWidth)
{
    EXPECT_FALSE(NumberGlyphs().Width(L"15"));
}
