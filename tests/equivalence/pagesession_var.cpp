#include "pagesession.h"
#include "records.h"

#include <wx/textctrl.h>

#include <algorithm>

namespace {

constexpr int widestColumn = 450;
constexpr int readColumn = 1;

class VarSession : public Session
{
public:
    using Session::Session;

protected:
    wxFrame& Frame() override { return *m_pages.frame; }

    void BeginRun(int /*run*/) override { Load(); }

    void Step() override
    {
        switch (Random().Below(14)) {
        case 0:
            Resize();
            break;
        case 1:
            SelectCell();
            break;
        case 2:
            Delete();
            break;
        case 3:
        case 4:
            Edit();
            break;
        case 5:
            SizeColumn();
            break;
        case 6:
            if (Random().OneIn(5)) {
                Load();
            } else if (Random().OneIn(10)) {
                Both(
                    m_pages.host,
                    [this] { m_pages.product->Reset(); },
                    [this] { m_pages.reference->Reset(); });
            }
            break;
        default:
            Answer();
        }
    }

    void Compare(bool /*whole*/) override
    {
        const wxGrid& product = *m_pages.productGrid;
        const wxGrid& reference = *m_pages.referenceGrid;
        Require(product.GetNumberRows() == reference.GetNumberRows(), "number of rows");
        const GridPicture seen = PictureOf(product);
        const GridPicture expected = PictureOf(reference);
        Require(
            seen == expected,
            "watch page " + testing::PrintToString(seen.numbers) + " and " +
                testing::PrintToString(expected.numbers));
        for (int row = 0; row < reference.GetNumberRows(); ++row) {
            for (int column = 0; column < reference.GetNumberCols(); ++column) {
                Require(
                    product.IsReadOnly(row, column) == reference.IsReadOnly(row, column),
                    "cells that can be edited");
            }
        }
    }

private:
    int Rows() const { return m_pages.referenceGrid->GetNumberRows(); }

    void Load()
    {
        NoteLayoutChange();
        static const std::vector<std::string> texts = {
            "MB1/D", "MW2/H", "MD4/G", "M5.3/B", "DB20.DBB7/B", "T5/D", "E1.1/B", "no operand"};
        constexpr int mostLines = 21;
        std::vector<std::string> lines(static_cast<std::size_t>(Random().Below(mostLines + 1)));
        std::generate(lines.begin(), lines.end(), [this] {
            return texts[static_cast<std::size_t>(Random().Below(static_cast<int>(texts.size())))];
        });
        Both(
            m_pages.host,
            [&] { m_pages.LoadProduct(lines); },
            [&] { m_pages.LoadReference(lines); });
    }

    void Resize()
    {
        NoteLayoutChange();
        m_pages.Resize(RandomSize());
    }

    void SelectCell()
    {
        if (Rows() > 0) {
            const wxGridCellCoords cell(Random().Below(Rows()), Random().Below(3));
            m_pages.productGrid->SetGridCursor(cell);
            m_pages.referenceGrid->SetGridCursor(cell);
        }
    }

    void SizeColumn()
    {
        const int column = Random().Below(3);
        NoteLayoutChange();
        const int width = 1 + Random().Below(widestColumn);
        m_pages.productGrid->SetColSize(column, width);
        m_pages.referenceGrid->SetColSize(column, width);
    }

    void Delete()
    {
        if (Rows() == 0 || !Random().OneIn(3)) {
            return;
        }
        NoteLayoutChange();
        const int row = Random().Below(Rows());
        for (wxGrid* grid :
             std::initializer_list<wxGrid*>{m_pages.productGrid, m_pages.referenceGrid}) {
            grid->SelectBlock(row, 0, row, 2);
        }
        Both(
            m_pages.host,
            [this] {
                wxCommandEvent remove;
                m_pages.product->OnButtonDelete(remove);
            },
            [&] { m_pages.reference->Delete(static_cast<std::size_t>(row)); });
    }

    void Answer()
    {
        NoteLayoutChange(); // columns may become wider
        // Ids grow with every list; unknown ones are dropped by both sides.
        const CMD_DATA answer = PlcMakeReadAnswer(RandomKey(), Random().Value());
        Both(
            m_pages.host,
            [&] { m_pages.product->AnswerReadVarRequest(answer); },
            [&] { m_pages.reference->AnswerReadVarRequest(answer); });
    }

    std::uint16_t RandomKey()
    {
        const auto& ids = m_pages.reference->RequestIds();
        return ids.empty() || Random().OneIn(20)
                   ? std::uint16_t{9}
                   : ids[static_cast<std::size_t>(Random().Below(static_cast<int>(ids.size())))];
    }

    /// Opens the editor of a value, lets answers come, and ends the edit in one of four ways.
    void Edit()
    {
        if (Rows() == 0) {
            return;
        }
        const int row = Random().Below(Rows());
        const int way = Random().Below(4);
        std::vector<CMD_DATA> answers;
        for (int i = Random().Below(4); i > 0; --i) {
            answers.push_back(PlcMakeReadAnswer(RandomKey(), Random().Value()));
        }
        const auto edit = [&](auto& page, wxGrid& grid) {
            grid.SetGridCursor(row, readColumn);
            grid.EnableCellEditControl();
            for (const CMD_DATA& answer : answers) {
                page.AnswerReadVarRequest(answer);
            }
            if (way > 0) {
                const wxObjectDataPtr<wxGridCellEditor> editor(grid.GetCellEditor(row, readColumn));
                static_cast<wxTextCtrl*>(editor->GetControl())
                    ->SetValue(way == 1 ? "no value" : "1");
            }
            if (way == 3) {
                const wxObjectDataPtr<wxGridCellEditor> editor(grid.GetCellEditor(row, readColumn));
                editor->Reset();
            }
            grid.DisableCellEditControl();
            FinishLayout(Frame());
        };
        Both(
            m_pages.host,
            [&] { edit(*m_pages.product, *m_pages.productGrid); },
            [&] { edit(*m_pages.reference, *m_pages.referenceGrid); });
        Require(
            m_pages.frame->GetStatusBar()->GetStatusText() ==
                m_pages.referenceStatus->GetStatusBar()->GetStatusText(),
            "status line");
    }

    VarPages m_pages;
};

} // namespace

std::unique_ptr<Session> NewVarSession(const StepOptions& options, Dice& dice)
{
    return std::make_unique<VarSession>(options, dice);
}
