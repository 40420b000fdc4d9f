#include "gridinframe.h"
#include "pagesession.h"
#include "plcprgpanel_state.h"
#include "records.h"

#include <algorithm>

namespace {

constexpr int usualBlock = 300;
constexpr int largestBlock = 65535;

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
        NoteLayoutChange();
        Both(
            m_pages.host,
            [&] { m_pages.ChooseOnProduct(index); },
            [&] { m_pages.reference->ChooseBlock(index); });
    }

    void Resize()
    {
        NoteLayoutChange();
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
        NoteLayoutChange();
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

} // namespace

std::unique_ptr<Session> NewPrgSession(const StepOptions& options, Dice& dice, bool withLargest)
{
    return std::make_unique<PrgSession>(options, dice, withLargest);
}
