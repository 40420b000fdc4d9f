#include "debugfile.h"
#include "literal_drain.h"
#include "literal_listing.h"
#include "plcdebugframe_drain.h"
#include "plclist_shown.h"
#include "plcprggrid_rows.h"
#include "plcprgpanel_state.h"
#include "random_steps.h"
#include "records.h"
#include "tempdir.h"

#include <algorithm>
#include <array>

// The windowless halves of both pages beside the same taken literally: queue and drain, loading,
// rows on screen, answers, what the cells show and how wide the columns have to be.

namespace {

constexpr int largestBlock = 65535;
constexpr int usualBlock = 300;
constexpr int rowHeight = 20;
constexpr int edgeOfWindow = 1942;

/// A view on a listing, in pixels, whose rows are all equally high.
struct View
{
    int top = 0;
    int height = 400;

    bool Touches(int row) const
    {
        return (row + 1) * rowHeight >= top && row * rowHeight <= top + height;
    }
};

int WidthOf(const std::wstring& text)
{
    constexpr int letter = 7;
    return letter * static_cast<int>(text.size());
}

/// The product's listing, put together as its page does.
class Listing
{
public:
    void Load(std::FILE* file, const DBG_BAUSTEIN_ENTRY& block)
    {
        m_lines = ReadBlockLines(file, block);
        m_index.Build(m_lines);
        for (ShownColumn* column : {&m_states, &m_values}) {
            column->Clear(m_lines.size());
        }
        for (const DB_BAUSTEIN& line : m_lines) {
            m_states.Append(line.state);
            m_values.Append(line.value);
        }
    }

    literal::Rows Visible(const View& view) const
    {
        const RowRange near =
            RowsNearWindow(view.top, view.height, rowHeight, static_cast<int>(m_lines.size()));
        const auto rows =
            RowsToRequest(m_lines, near, [&view](int row) { return view.Touches(row); });
        return rows ? literal::Rows{rows->first, rows->last} : literal::Rows{};
    }

    void Answer(const CMD_DATA& answer, const literal::Rows& requested)
    {
        ApplyAnswer(answer, m_index, m_lines);
        for (int row = requested.first; row != -1 && row <= requested.last; ++row) {
            const auto position = static_cast<std::size_t>(row);
            m_states.Replace(position, m_lines[position].state);
            m_values.Replace(position, m_lines[position].value);
        }
    }

    std::array<int, 2> Widths() { return {m_states.MaxWidth(WidthOf), m_values.MaxWidth(WidthOf)}; }

    std::array<std::wstring, 3> Cells(std::size_t row) const
    {
        return {m_states.Text(row), m_values.Text(row), m_lines[row].text};
    }

    const std::vector<DB_BAUSTEIN>& Lines() const { return m_lines; }

private:
    std::vector<DB_BAUSTEIN> m_lines;
    StepIndex m_index;
    ShownColumn m_states;
    ShownColumn m_values;
};

/// The same taken literally.
class LiteralListing
{
public:
    void Load(std::FILE* file, const DBG_BAUSTEIN_ENTRY& block)
    {
        m_lines = literal::ReadLines(file, block);
        m_cells.clear();
        for (const DB_BAUSTEIN& line : m_lines) {
            m_cells.push_back({line.state, line.value, line.text});
        }
    }

    literal::Rows Visible(const View& view) const
    {
        return literal::VisibleRows(m_lines, [&view](int row) { return view.Touches(row); });
    }

    void Answer(const CMD_DATA& answer, const literal::Rows& requested)
    {
        literal::ApplyAnswer(answer, m_lines);
        for (int row = requested.first; row != -1 && row <= requested.last; ++row) {
            const auto position = static_cast<std::size_t>(row);
            m_cells[position][0] = m_lines[position].state;
            m_cells[position][1] = m_lines[position].value;
        }
    }

    std::array<int, 2> Widths() const
    {
        std::array<int, 2> widths{};
        for (const auto& cells : m_cells) {
            widths = {
                std::max(widths[0], WidthOf(cells[0])), std::max(widths[1], WidthOf(cells[1]))};
        }
        return widths;
    }

    const std::array<std::wstring, 3>& Cells(std::size_t row) const { return m_cells[row]; }

    std::size_t RowCount() const { return m_cells.size(); }

private:
    std::vector<DB_BAUSTEIN> m_lines;
    std::vector<std::array<std::wstring, 3>> m_cells;
};

class Comparison
{
public:
    explicit Comparison(const StepOptions& options) : m_options(options), m_dice(options.seed) {}

    void Run()
    {
        for (m_step = 0; m_step < m_options.steps; ++m_step) {
            if (m_step % stepsOfARun == 0) {
                ChangeBlock(IsLargeRun(m_step / stepsOfARun) ? largestBlock : usualBlock);
            }
            Step();
            if (m_step % stepsOfARun == stepsOfARun - 1) {
                CompareAllCells();
            }
        }
    }

private:
    void Step()
    {
        switch (m_dice.Below(10)) {
        case 0:
        case 1:
            DrainAnswers();
            break;
        case 2:
            m_view.height = m_dice.Below(edgeOfWindow);
            Request();
            break;
        case 3:
        case 4:
            m_view.top = std::max(0, m_view.top + (m_dice.Below(5) - 2) * rowHeight);
            Request();
            break;
        case 5:
            m_view.top = m_dice.Below(static_cast<int>(m_literal.RowCount()) * rowHeight);
            Request();
            break;
        case 6:
            if (m_dice.OneIn(4) && m_literal.RowCount() <= usualBlock) {
                ChangeBlock(usualBlock);
            }
            break;
        default:
            AnswerRequested();
        }
    }

    void ChangeBlock(int largest)
    {
        // The largest block is that large; the others are of any size up to the usual one.
        const int count = largest == largestBlock ? largest : m_dice.Below(largest + 1);
        std::vector<std::string> texts(static_cast<std::size_t>(count));
        std::generate(texts.begin(), texts.end(), [this] { return RandomLine(m_dice); });
        const auto firstStep = static_cast<std::uint16_t>(m_dice.Below(1000));
        const char* const lineEnd = m_dice.OneIn(2) ? "\n" : "\r\n";
        const PrgFile file =
            OpenPrgFile(m_dir.Write("block", DebugFile({{"FB1", firstStep, texts}}, lineEnd)));
        const DBG_BAUSTEIN_ENTRY block = ReadBlockIndex(file.get()).at(0);
        m_product.Load(file.get(), block);
        m_literal.Load(file.get(), block);
        m_requested = {};
        Request();
    }

    void Request()
    {
        const literal::Rows product = m_product.Visible(m_view);
        Require(product == m_literal.Visible(m_view), "requested rows");
        m_requested = product;
    }

    void AnswerRequested()
    {
        if (m_requested.first == -1) {
            return;
        }
        const auto step = [this](int row) {
            return m_product.Lines()[static_cast<std::size_t>(row)].step;
        };
        const std::int32_t first = step(m_requested.first);
        const std::int32_t last = step(m_requested.last);
        std::vector<AnsweredStep> states(static_cast<std::size_t>(last - first + 1));
        std::generate(states.begin(), states.end(), [this] {
            return AnsweredStep{static_cast<std::uint8_t>(m_dice.Below(3)), m_dice.Value()};
        });
        const CMD_DATA answer = PrgStateAnswerRecord(first, last, states);
        m_product.Answer(answer, m_requested);
        m_literal.Answer(answer, m_requested);
        Require(m_product.Widths() == m_literal.Widths(), "widths");
        for (int row = m_requested.first; row <= m_requested.last; ++row) {
            CompareCells(static_cast<std::size_t>(row));
        }
    }

    void DrainAnswers()
    {
        constexpr int mostAnswers = 60;
        constexpr int keys = 25;
        for (int i = m_dice.Below(mostAnswers); i > 0; --i) {
            const CMD_DATA answer =
                PlcMakeReadAnswer(static_cast<std::uint16_t>(m_dice.Below(keys)), m_dice.Value());
            m_queue.Push(answer);
            m_literalQueue.Push(answer);
        }
        if (m_dice.OneIn(3)) { // a tick may find what several have left
            return;
        }
        std::vector<CMD_DATA> newest;
        m_queue.DeliverNewest(
            [&newest](const CMD_DATA& answer) { newest.push_back(answer); }, [] { return false; });
        const literal::Pending pending = literal::Drain(m_literalQueue);
        Require(literal::SameOrder(newest, pending), "drained answers");
    }

    void CompareCells(std::size_t row)
    {
        Require(m_product.Cells(row) == m_literal.Cells(row), "cells");
    }

    void CompareAllCells()
    {
        Require(m_product.Lines().size() == m_literal.RowCount(), "number of rows");
        for (std::size_t row = 0; row < m_literal.RowCount(); ++row) {
            CompareCells(row);
        }
    }

    void Require(bool same, const char* what) const
    {
        RequireAgreement(same, m_options, m_step, what);
    }

    StepOptions m_options;
    Dice m_dice;
    int m_step = 0;
    TempDir m_dir;
    View m_view;
    literal::Rows m_requested;
    Listing m_product;
    LiteralListing m_literal;
    AnswerQueue m_queue{VariableOf};
    literal::Queue<CMD_DATA> m_literalQueue;
};

} // namespace

int main(int argc, char** argv)
{
    Comparison(ReadStepOptions(argc, argv)).Run();
    return 0;
}
