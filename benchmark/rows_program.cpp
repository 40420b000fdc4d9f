#include "gridinframe.h"
#include "pages.h"
#include "plcprgpanel_state.h"
#include "records.h"
#include "waitfor.h"
#include "windowrows.h"

#include <algorithm>
#include <cstring>
#include <malloc.h>

// The program page.

namespace bench {

namespace {

const wxSize usualSize(600, 480);

/// Of both pages on a block of many lines.
void RequireSameLastRows(const PrgPages& pages, int rows, const std::string& what)
{
    const auto cells = [rows](const wxGrid& grid) {
        return PictureOf(grid, manyLines - rows, manyLines - 1).cells;
    };
    RequireSame(cells(*pages.productGrid) == cells(*pages.referenceGrid), what);
}

/// An answer for all steps of a request.
CMD_DATA AnswerTo(const CMD_DATA& request, std::int32_t offset)
{
    const std::int32_t first = PlcFirstStep(&request);
    const std::int32_t last = PlcLastStep(&request);
    std::vector<AnsweredStep> states;
    for (std::int32_t step = first; step <= last; ++step) {
        states.push_back({1, step + offset});
    }
    return PrgStateAnswerRecord(first, last, states);
}

CMD_DATA LastRequest(const RecordingHost& host)
{
    RequireSame(!host.requests.empty(), "request");
    return host.requests.back().record;
}

// ---- Its grid alone

std::size_t HeapInUse()
{
    return mallinfo2().uordblks;
}

template <typename Grid> std::size_t HeapOfRows(Grid& grid)
{
    const std::size_t before = HeapInUse();
    grid.InitShowBS();
    return HeapInUse() - before;
}

void FillRow()
{
    constexpr int pairs = 11;
    const PrgPages pages({Block(0), Block(manyLines)});
    const TempDir dir;
    const PrgFile file = OpenPrgFile(dir.Write("block", DebugFile({Block(manyLines)})));
    const std::vector<DB_BAUSTEIN> lines =
        ReadBlockLines(file.get(), ReadBlockIndex(file.get()).at(0));
    auto* product = new PlcPrgGrid(pages.product, lines);
    auto* reference = new literal::PrgGrid(pages.reference, lines);
    const auto productHeap = static_cast<double>(HeapOfRows(*product));
    const auto referenceHeap = static_cast<double>(HeapOfRows(*reference));
    const double time =
        CpuRatio(pairs, {[&] { product->InitShowBS(); }}, {[&] { reference->InitShowBS(); }});
    RequireSame(PictureOf(*product).cells == PictureOf(*reference).cells, "cells of a block");
    PrintRow("filling the grid with 65,535 lines, time", "literal", time, 0.05);
    PrintRow("filling the grid, heap", "literal", productHeap / referenceHeap, 0.03);
}

void ResizeRow()
{
    constexpr int pairs = 5;
    constexpr int timesOfProduct = 50;
    constexpr int pairsOfSizes = 15;
    const PrgPages pages({Block(manyLines)});
    const auto many = [&] { SendSize(*pages.productGrid); };
    const double ratio =
        CpuRatio(pairs, {many, timesOfProduct}, {[&] { SendSize(*pages.referenceGrid); }});
    RequireSameGrids(*pages.productGrid, *pages.referenceGrid, "resize");
    PrintRow("resize with 65,535 rows", "literal", ratio, 0.005);

    const std::vector<DB_BAUSTEIN> fewRows(fewLines, DB_BAUSTEIN{L"?", L"-", L"U E 1", 1});
    auto* small = new PlcPrgGrid(pages.product, fewRows);
    small->InitShowBS();
    small->SetSize(usualSize);
    const double growth =
        CpuRatio(pairsOfSizes, {many, timesOfProduct}, {[&] { SendSize(*small); }, timesOfProduct});
    PrintRow("resize with 65,535 rows", "with 100 rows", growth, 2);
}

void VisibleRow()
{
    constexpr int pairs = 15;
    constexpr int times = 2000;
    constexpr int timesOfReference = 2;
    const PrgPages pages({Block(manyLines)});
    PlcPrgGrid& product = *pages.productGrid;
    const Repeated find{[&] { product.DoPrgStateRequest(); }, times};
    const Repeated findLiterally{
        [&] { pages.referenceGrid->DoPrgStateRequest(); }, timesOfReference};
    std::vector<double> top;
    std::vector<double> end;
    std::vector<double> reference;
    for (int i = 0; i < pairs; ++i) {
        ScrollToRow(product, 0);
        find.work();
        top.push_back(CpuOf(find));
        ScrollToRow(product, manyLines);
        find.work();
        end.push_back(CpuOf(find));
        const CMD_DATA ofProduct = LastRequest(pages.host);
        ScrollToRow(*pages.referenceGrid, manyLines);
        findLiterally.work();
        RequireSame(
            std::memcmp(&ofProduct, &pages.host.requests.back().record, sizeof ofProduct) == 0,
            "visible range");
        reference.push_back(CpuOf(findLiterally));
    }
    PrintRow("visible range at the end of 65,535 rows", "literal", end, reference, 0.002);
    PrintRow("visible range at the end of 65,535 rows", "at the top", end, top, 3);
}

/// Has a page request its rows on screen, whatever it has requested before.
template <typename Page, typename Grid>
CMD_DATA Resubscribe(const RecordingHost& host, Page& page, Grid& grid)
{
    page.SendPrgStateRequest(noStep, noStep);
    grid.ClearIdxRequestRows();
    grid.DoPrgStateRequest();
    return LastRequest(host);
}

/// Brings the last or the first rows of a grid on screen, 98 steps of them, and has them requested.
template <typename Page, typename Grid>
CMD_DATA Subscribe98(const RecordingHost& host, Page& page, Grid& grid, int row)
{
    constexpr int rowsOf98Steps = 120;
    grid.SetSize(usualSize.x, rowsOf98Steps * grid.GetDefaultRowSize());
    ScrollToRow(grid, row);
    const CMD_DATA request = Resubscribe(host, page, grid);
    RequireSame(request.key == PLC_MAX_STEPS, "steps of a request");
    return request;
}

void AnswerRow()
{
    constexpr int pairs = 15;
    constexpr int times = 50;
    constexpr int timesOfReference = 2;
    const PrgPages pages({Block(manyLines)});
    const CMD_DATA request =
        Subscribe98(pages.host, *pages.reference, *pages.referenceGrid, manyLines);
    std::int32_t value = 0;
    std::vector<double> top;
    std::vector<double> end;
    std::vector<double> reference;
    const auto timed = [&](auto& page, const CMD_DATA& range, int repetitions) {
        const CMD_DATA one = AnswerTo(range, ++value);
        const CMD_DATA other = AnswerTo(range, ++value);
        const double time = CpuOf([&] {
            for (int i = 0; i < repetitions; i += 2) {
                page.AnswerPrgState(one);
                page.AnswerPrgState(other);
            }
        });
        RunPending();
        return time / repetitions;
    };
    for (int i = 0; i < pairs; ++i) {
        const CMD_DATA first = Subscribe98(pages.host, *pages.product, *pages.productGrid, 0);
        top.push_back(timed(*pages.product, first, times));
        const CMD_DATA last =
            Subscribe98(pages.host, *pages.product, *pages.productGrid, manyLines);
        RequireSame(std::memcmp(&request, &last, sizeof last) == 0, "requested range");
        end.push_back(timed(*pages.product, last, times));
        --value;
        --value;
        reference.push_back(timed(*pages.reference, request, timesOfReference));
        constexpr int lastRows = 200;
        RequireSameLastRows(pages, lastRows, "cells after an answer");
    }
    PrintRow("answer of 98 steps at the end of 65,535 lines", "literal", end, reference, 0.02);
    PrintRow("answer of 98 steps at the end of 65,535 lines", "at the top", end, top, 2);
}

// ---- The page at work

void ShowOnly(wxWindow& shown, wxWindow& hidden)
{
    hidden.Hide();
    shown.Show();
    RunPending();
}

/// What a run of a page on the screen costs.
struct Run
{
    double cpu;
    int ticks;
    std::vector<double> tickTimes;
};

/// Lets a page run at the end of the listing.
/// @param scrolling moves the view by a row every 20 ms.
/// @param answering hands over an answer for the rows on screen, with every tick.
/// @param setPending tells the page that it was scrolled.
template <typename Page, typename Grid>
Run RunPage(
    const RecordingHost& host,
    Page& page,
    Grid& grid,
    bool scrolling,
    bool answering,
    const std::function<void()>& setPending)
{
    constexpr unsigned seconds = 4;
    constexpr int scrollMs = 20;
    constexpr int rowsUpAndDown = 50;
    Run run{};
    int turn = 0;
    ScrollToRow(grid, manyLines);
    CMD_DATA answer = AnswerTo(Resubscribe(host, page, grid), 0);
    Ticker scroller(scrollMs, [&] {
        if (scrolling) {
            const int way = ++turn % (2 * rowsUpAndDown);
            const int up = std::min(way, 2 * rowsUpAndDown - way);
            ScrollToRow(grid, manyLines - rowsUpAndDown - up);
            setPending();
        }
    });
    if (!scrolling) {
        scroller.Stop();
    }
    std::size_t requests = host.requests.size();
    Ticker ticker(tickMs, [&] {
        if (host.requests.size() != requests) {
            requests = host.requests.size();
            answer = AnswerTo(LastRequest(host), 0);
        }
        run.tickTimes.push_back(CpuOf([&] {
            if (answering) {
                page.AnswerPrgState(answer);
            }
            page.OnScrollSendRequest();
        }));
    });
    run.cpu = CpuOfLoop(seconds);
    run.ticks = ticker.count;
    return run;
}

void AppendTimes(std::vector<double>& all, const Run& run)
{
    all.insert(all.end(), run.tickTimes.begin(), run.tickTimes.end());
}

void ScrollRow()
{
    constexpr int pairs = 3;
    const PrgPages pages({Block(manyLines)});
    std::vector<double> tick;
    std::vector<double> literalTick;
    std::vector<double> ticks;
    std::vector<double> ticksAlone;
    std::vector<double> cpu;
    std::vector<double> cpuAlone;
    const auto pending = [&] { pages.productGrid->SetScrollPending(); };
    const auto literalPending = [&] { pages.referenceGrid->scrollPending = true; };
    for (int i = 0; i < pairs; ++i) {
        ShowOnly(*pages.product, *pages.reference);
        const Run both =
            RunPage(pages.host, *pages.product, *pages.productGrid, true, true, pending);
        const Run alone =
            RunPage(pages.host, *pages.product, *pages.productGrid, true, false, pending);
        ShowOnly(*pages.reference, *pages.product);
        const Run reference =
            RunPage(pages.host, *pages.reference, *pages.referenceGrid, true, true, literalPending);
        AppendTimes(tick, both);
        AppendTimes(literalTick, reference);
        ticks.push_back(both.ticks);
        ticksAlone.push_back(alone.ticks);
        cpu.push_back(both.cpu);
        cpuAlone.push_back(alone.cpu);
    }
    const char* const what = "scrolling at the end of 65,535 lines, answers at 10 Hz";
    PrintRow(std::string(what) + ": tick", "literal", tick, literalTick, 0.02);
    // One tick more or less is where the run happens to end.
    PrintRow(
        std::string(what) + ": ticks missed",
        "scrolling alone",
        std::max(0.0, Median(ticksAlone) - Median(ticks)),
        1);
    PrintRow(std::string(what) + ": processor", "scrolling alone", cpu, cpuAlone, 1.3);
}

void StillRow()
{
    constexpr int pairs = 3;
    const PrgPages pages({Block(manyLines)});
    std::vector<double> product;
    std::vector<double> reference;
    for (int i = 0; i < pairs; ++i) {
        ShowOnly(*pages.product, *pages.reference);
        product.push_back(
            RunPage(pages.host, *pages.product, *pages.productGrid, false, true, nullptr).cpu);
        ShowOnly(*pages.reference, *pages.product);
        reference.push_back(
            RunPage(pages.host, *pages.reference, *pages.referenceGrid, false, true, nullptr).cpu);
    }
    constexpr int lastRows = 20;
    RequireSameLastRows(pages, lastRows, "cells of a still page");
    PrintRow(
        "page still, unchanged answers at 10 Hz: processor", "literal", product, reference, 0.12);
}

} // namespace

std::vector<Row> ProgramRows()
{
    return {
        {"fill", FillRow},
        {"resize", ResizeRow},
        {"visible", VisibleRow},
        {"answer", AnswerRow},
        {"scroll", ScrollRow},
        {"still", StillRow}};
}

} // namespace bench
