#include "gridinframe.h"
#include "pages.h"
#include "plcprgpanel_state.h"
#include "random_steps.h"
#include "records.h"
#include "waitfor.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/init.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <cstring>
#include <memory>

// Both pages in real windows beside the same taken literally: every request, cell, width and
// selection has to agree.

namespace {

constexpr int stepsOfASession = 5 * stepsOfARun;
constexpr int usualBlock = 300;
constexpr int largestBlock = 65535;
constexpr int narrowest = 10; // the layout of a grid that is narrower than its border never settles
constexpr int widest = 900;
constexpr int highest = 1200;
constexpr int readColumn = 1;

using Requests = std::vector<std::string>;

/// What both kinds of sessions share.
class Session
{
public:
    Session(const StepOptions& options, Dice& dice) : m_options(options), m_dice(dice) {}

    virtual ~Session() = default;
    Session(const Session&) = delete;
    Session(Session&&) = delete;
    Session& operator=(const Session&) = delete;
    Session& operator=(Session&&) = delete;

    /// @param step counted through all sessions.
    void Run(int step)
    {
        m_step = step;
        if (step % stepsOfARun == 0) {
            BeginRun(step / stepsOfARun);
            LayOut();
        }
        Step();
        LayOut();
        Compare(step % stepsOfARun == stepsOfARun - 1);
    }

protected:
    virtual void BeginRun(int run) = 0;
    virtual void Step() = 0;
    virtual wxFrame& Frame() = 0;
    /// @param whole with all cells.
    virtual void Compare(bool whole) = 0;

    Dice& Random() { return m_dice; }

    /// To be called by a step that may change the layout.
    void LaysOut() { m_laysOut = true; }

    wxSize RandomSize()
    {
        const int width = m_dice.Below(widest - narrowest) + narrowest;
        return {width, m_dice.Below(highest - narrowest) + narrowest};
    }

    /// Does the same on both sides; the requests that this leads to have to agree.
    template <typename OnProduct, typename OnReference>
    void Both(RecordingHost& host, OnProduct onProduct, OnReference onReference)
    {
        host.requests.clear(); // what both pages have sent in between, by events of their own
        onProduct();
        const Requests product = host.TakeInWords();
        onReference();
        const Requests reference = host.TakeInWords();
        Require(
            product == reference,
            "requests " + testing::PrintToString(product) + " and " +
                testing::PrintToString(reference));
    }

    void Require(bool same, const std::string& what) const
    {
        RequireAgreement(same, m_options, m_step, what);
    }

private:
    /// Neither side may begin a step while a former one still changes its layout.
    void LayOut()
    {
        if (m_laysOut) {
            FinishLayout(Frame());
            m_laysOut = false;
        }
    }

    const StepOptions& m_options;
    Dice& m_dice;
    int m_step = 0;
    bool m_laysOut = false;
};

std::vector<DebugFileBlock> RandomBlocks(Dice& dice, bool withLargest)
{
    constexpr int count = 20;
    std::vector<DebugFileBlock> blocks;
    const auto add = [&](int lines) {
        DebugFileBlock block{
            "B" + std::to_string(blocks.size()), static_cast<std::uint16_t>(dice.Below(1000))};
        block.lines.resize(static_cast<std::size_t>(lines));
        std::generate(block.lines.begin(), block.lines.end(), [&dice] { return RandomLine(dice); });
        blocks.push_back(block);
    };
    for (int i = 0; i < count; ++i) {
        add(dice.Below(usualBlock + 1));
    }
    if (withLargest) {
        add(largestBlock);
    }
    return blocks;
}

/// The program pages.
class PrgSession : public Session
{
public:
    PrgSession(const StepOptions& options, Dice& dice, bool withLargest)
        : Session(options, dice), m_blocks(RandomBlocks(dice, withLargest)), m_pages(m_blocks)
    {
        m_pages.product->SendPrgStateRequest(noStep, noStep);
        m_pages.reference->SendPrgStateRequest(noStep, noStep);
        m_pages.productGrid->ClearIdxRequestRows();
        m_pages.referenceGrid->ClearIdxRequestRows();
        m_pages.host.requests.clear();
    }

protected:
    wxFrame& Frame() override { return *m_pages.frame; }

    void BeginRun(int run) override
    {
        const auto count = static_cast<int>(m_blocks.size());
        m_onLargest = IsLargeRun(run);
        Choose(m_onLargest ? count - 1 : Random().Below(std::min(count, 20)));
    }

    void Step() override
    {
        switch (Random().Below(12)) {
        case 0:
            Resize();
            break;
        case 1:
        case 2:
        case 3:
            Scroll();
            break;
        case 4:
            MoveCursor();
            break;
        case 5:
        case 6:
        case 7:
            Tick();
            break;
        case 8:
            if (Random().OneIn(3) && !m_onLargest) {
                Choose(Random().Below(20));
            }
            break;
        case 9:
            if (Random().OneIn(5)) {
                ShowOrHide();
            }
            break;
        default:
            Answer();
        }
    }

    void Compare(bool whole) override
    {
        const wxGrid& product = *m_pages.productGrid;
        const wxGrid& reference = *m_pages.referenceGrid;
        const int rows = reference.GetNumberRows();
        Require(product.GetNumberRows() == rows, "number of rows");
        constexpr int someRows = 150;
        const int top = whole ? 0 : std::max(0, std::min(m_topRow, rows - someRows));
        const int last = whole ? rows - 1 : std::min(rows - 1, top + someRows);
        Require(PictureOf(product, top, last) == PictureOf(reference, top, last), "program page");
    }

private:
    void Choose(int index)
    {
        LaysOut();
        Both(
            m_pages.host,
            [&] { m_pages.ChooseOnProduct(index); },
            [&] { m_pages.reference->ChooseBlock(index); });
    }

    void Resize()
    {
        LaysOut();
        const wxSize size = RandomSize();
        Both(
            m_pages.host,
            [&] { m_pages.productGrid->SetSize(size); },
            [&] { m_pages.referenceGrid->SetSize(size); });
    }

    void Scroll()
    {
        const int rows = m_pages.referenceGrid->GetNumberRows();
        m_topRow = Random().OneIn(3) ? Random().Below(rows)
                                     : std::max(0, m_topRow + Random().Below(9) - 4);
        ScrollToRow(*m_pages.productGrid, m_topRow);
        ScrollToRow(*m_pages.referenceGrid, m_topRow);
        m_pages.productGrid->SetScrollPending();
        m_pages.referenceGrid->scrollPending = true;
    }

    void MoveCursor()
    {
        const int rows = m_pages.referenceGrid->GetNumberRows();
        if (rows > 0) {
            const wxGridCellCoords cell(Random().Below(rows), Random().Below(3));
            for (wxGrid* grid :
                 std::initializer_list<wxGrid*>{m_pages.productGrid, m_pages.referenceGrid}) {
                grid->SetGridCursor(cell);
                grid->SelectBlock(cell, {rows - 1, 2});
            }
        }
    }

    void ShowOrHide()
    {
        LaysOut();
        const bool shown = !m_pages.product->IsShown();
        Both(
            m_pages.host,
            [&] { m_pages.product->Show(shown); },
            [&] {
                m_pages.reference->Show(shown);
                if (shown) {
                    m_pages.referenceGrid->scrollPending = true;
                    m_pages.referenceGrid->DoPrgStateRequest();
                } else {
                    m_pages.reference->FinishPrgStateRequest();
                }
            });
    }

    /// A hidden page gets none.
    void Tick()
    {
        if (m_pages.product->IsShown()) {
            Both(
                m_pages.host,
                [this] { m_pages.product->OnScrollSendRequest(); },
                [this] { m_pages.reference->OnScrollSendRequest(); });
        }
    }

    /// Mostly for the steps that are subscribed, sometimes for others.
    void Answer()
    {
        const auto range = m_pages.reference->SubscribedSteps();
        const std::int32_t first = range.first + (Random().OneIn(8) ? 1 : 0);
        const std::int32_t last = std::max(first, range.last);
        if (range.first == noStep || last - first >= PLC_MAX_STEPS) {
            return;
        }
        std::vector<AnsweredStep> states(static_cast<std::size_t>(last - first + 1));
        std::generate(states.begin(), states.end(), [this] {
            return AnsweredStep{static_cast<std::uint8_t>(Random().Below(3)), Random().Value()};
        });
        const CMD_DATA answer = PrgStateAnswerRecord(first, last, states);
        Both(
            m_pages.host,
            [&] { m_pages.product->AnswerPrgState(answer); },
            [&] { m_pages.reference->AnswerPrgState(answer); });
    }

    std::vector<DebugFileBlock> m_blocks;
    PrgPages m_pages;
    bool m_onLargest = false;
    int m_topRow = 0;
};

/// The watch pages.
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
        LaysOut();
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
        LaysOut();
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
        LaysOut();
        const int width = 1 + Random().Below(widest / 2);
        m_pages.productGrid->SetColSize(column, width);
        m_pages.referenceGrid->SetColSize(column, width);
    }

    void Delete()
    {
        if (Rows() == 0 || !Random().OneIn(3)) {
            return;
        }
        LaysOut();
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
        LaysOut(); // columns may become wider
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

void RunSessions(const StepOptions& options)
{
    Dice dice(options.seed);
    std::unique_ptr<Session> session;
    for (int step = 0; step < options.steps; ++step) {
        if (step % stepsOfASession == 0) {
            const int firstRun = step / stepsOfARun;
            const bool onWatchPage = step / stepsOfASession % 2 == 1;
            session.reset(); // the host behind both pages can be there once only
            if (onWatchPage) {
                session = std::make_unique<VarSession>(options, dice);
            } else {
                session = std::make_unique<PrgSession>(options, dice, IsLargeRun(firstRun + 1));
            }
        }
        session->Run(step);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const StepOptions options = ReadStepOptions(argc, argv);
    int noArguments = 0;
    gtk_init(&noArguments, nullptr);
    if (!wxEntryStart(noArguments, static_cast<wxChar**>(nullptr)) || !wxTheApp->CallOnInit()) {
        return EXIT_FAILURE;
    }
    RunSessions(options);
    wxTheApp->OnExit();
    wxEntryCleanup();
    return EXIT_SUCCESS;
}
