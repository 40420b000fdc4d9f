#include "cellpicture.h"
#include "plclist.h"
#include "plclist_line.h"

#include <gtest/gtest.h>
#include <wx/fontenum.h>
#include <wx/frame.h>

#include <algorithm>
#include <string>

namespace {

const wxSize pictureSize(220, 40);

bool IsBlank(const wxImage& picture)
{
    const int bytes = 3 * pictureSize.x * pictureSize.y;
    const unsigned char* data = picture.GetData();
    return std::all_of(data, data + bytes, [data](unsigned char byte) { return byte == *data; });
}

/// A grid of one row and three columns, of which one cell is drawn by both renderers.
class LineRendererTest : public testing::Test
{
public:
    ~LineRendererTest() override { delete m_frame; }

protected:
    LineRendererTest()
    {
        m_grid->CreateGrid(1, 3);
        SetUpList(*m_grid);
    }

    wxImage PictureOf(wxGridCellRenderer& renderer, int column, bool isSelected)
    {
        wxBitmap bitmap(pictureSize);
        wxMemoryDC dc(bitmap);
        dc.SetBackground(*wxWHITE_BRUSH);
        dc.Clear();
        if (!painted.IsEmpty()) {
            dc.SetClippingRegion(painted);
        }
        const wxGridCellAttrPtr attr = m_grid->GetOrCreateCellAttrPtr(0, column);
        attr->SetTextColour(wxColour(20, 40, 120));
        attr->SetFont(font);
        renderer.Draw(*m_grid, *attr, dc, cell, 0, column, isSelected);
        dc.SelectObject(wxNullBitmap);
        return bitmap.ConvertToImage();
    }

    testing::AssertionResult IsDrawnAsByTheToolkit(int column, const wxString& text)
    {
        m_grid->SetCellValue(0, column, text);
        const wxObjectDataPtr<wxGridCellRenderer> toolkits(new wxGridCellStringRenderer);
        for (const bool isSelected : {false, true}) {
            if (!SamePicture(
                    PictureOf(*m_renderer, column, isSelected),
                    PictureOf(*toolkits, column, isSelected))) {
                return testing::AssertionFailure() << "another picture of \"" << text << "\"";
            }
        }
        return testing::AssertionSuccess();
    }

    wxFrame* m_frame = new wxFrame(nullptr, wxID_ANY, "grid");
    wxGrid* m_grid = new wxGrid(m_frame, wxID_ANY);
    const wxObjectDataPtr<wxGridCellRenderer> m_renderer{new LineRenderer};
    wxFont font{wxFontInfo(10)};
    wxRect cell{10, 5, 150, 25};
    wxRect painted; ///< Only this part, unless it is empty.
};

const wxString longText = "L DBW 254 and a remark that no cell of this width can hold";

} // namespace

TEST_F(LineRendererTest, DrawsOneLineAsTheToolkitDoes)
{
    const wxString all = " !\"#$%&'()*+,-./0123456789:;<=>?@[\\]^_`{|}~";
    for (const char* text : {"", "0", "-32768", "U E 1.0", "Wide WWW", "jgq|_", "@@@@@@@@@@@@"}) {
        EXPECT_TRUE(IsDrawnAsByTheToolkit(2, text));
    }
    EXPECT_TRUE(IsDrawnAsByTheToolkit(2, all));
    EXPECT_FALSE(IsBlank(PictureOf(*m_renderer, 2, false))) << "the comparison compares nothing";
}

TEST_F(LineRendererTest, DrawsNumbersOfEveryFontAsTheToolkitDoes)
{
    for (const wxString& face : wxFontEnumerator::GetFacenames()) {
        font = wxFont(wxFontInfo(10).FaceName(face));
        for (const char* text : {"11.1", "-7.047.74", "1234567890", "1.-7"}) {
            EXPECT_TRUE(IsDrawnAsByTheToolkit(2, text)) << face;
        }
    }
}

TEST_F(LineRendererTest, DrawsLettersBeyondAsciiLinesAndTabsAsTheToolkitDoes)
{
    for (const wchar_t* text : {L"\u00c4rger", L"\u65e5\u672c", L"two\nlines", L"a\tb", L"\r"}) {
        EXPECT_TRUE(IsDrawnAsByTheToolkit(2, text));
    }
}

TEST_F(LineRendererTest, DrawsATextThatDoesNotFitWithAnEllipsis)
{
    cell.width = 60;
    for (const wxString& text :
         {longText, wxString("-2147483640"), wxString(L"\u00c4rger mit W\u00e4rme")}) {
        m_grid->SetCellValue(0, 0, text);
        const wxImage cut = PictureOf(*m_renderer, 0, false);

        const int room = LineRenderer::Room(cell);
        m_grid->SetCellValue(0, 0, Ellipsized(text, *m_frame, font, room));
        EXPECT_NE(m_grid->GetCellValue(0, 0), text);
        EXPECT_TRUE(SamePicture(cut, PictureOf(*m_renderer, 0, false))) << text;
    }
}

TEST_F(LineRendererTest, DrawsInACellOfAnyWidthAsTheToolkitDoes)
{
    for (cell.width = 1; cell.width < 120; ++cell.width) {
        EXPECT_TRUE(IsDrawnAsByTheToolkit(0, "-2147483640")) << cell.width;
    }
}

TEST_F(LineRendererTest, DrawsInACellLowerThanTheLineAsTheToolkitDoes)
{
    cell.height = 9;

    EXPECT_TRUE(IsDrawnAsByTheToolkit(2, "gjq"));
}

TEST_F(LineRendererTest, FollowsAnotherFont)
{
    ASSERT_TRUE(IsDrawnAsByTheToolkit(2, "U E 1.0"));

    for (const int points : {16, 6}) {
        font = wxFont(wxFontInfo(points).Bold());
        EXPECT_TRUE(IsDrawnAsByTheToolkit(2, "U E 1.0"));
        EXPECT_TRUE(IsDrawnAsByTheToolkit(2, longText));
    }
}

TEST_F(LineRendererTest, DrawsWhatIsToBePaintedOfACell)
{
    for (int left = 0; left < pictureSize.x; left += 7) {
        painted = wxRect(left, 0, 15, pictureSize.y);
        EXPECT_TRUE(IsDrawnAsByTheToolkit(2, "WWW MW 100")) << left;
    }
}
