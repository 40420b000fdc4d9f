#include "pages.h"
#include "recordinghost.h"
#include "records.h"
#include "waitfor.h"
#include "windowrows.h"

// The watch page.

namespace bench {

namespace {

constexpr int watchedVars = 20;

std::vector<std::string> WatchList()
{
    static const std::vector<std::string> formats = {"MD%/D", "MW%/H", "MB%/B", "MD%/G"};
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < watchedVars; ++i) {
        std::string line = formats[i % formats.size()];
        lines.push_back(line.replace(line.find('%'), 1, std::to_string(4 * i)));
    }
    return lines;
}

template <typename Page> void Answer20(Page& page, std::int32_t value)
{
    for (std::uint16_t key = 0; key < watchedVars; ++key) {
        page.AnswerReadVarRequest(PlcMakeReadAnswer(key, value + 12347 * key));
    }
}

void WatchTickRow(const char* what, std::int32_t change, double goal)
{
    constexpr int pairs = 301;
    VarPages pages;
    pages.LoadProduct(WatchList());
    pages.LoadReference(WatchList());
    std::vector<double> product;
    std::vector<double> reference;
    std::int32_t value = 1;
    Answer20(*pages.product, value);
    Answer20(*pages.reference, value);
    for (int i = 0; i < pairs; ++i) {
        value += change;
        product.push_back(CpuOf([&] { Answer20(*pages.product, value); }));
        reference.push_back(CpuOf([&] { Answer20(*pages.reference, value); }));
        RequireSameGrids(*pages.productGrid, *pages.referenceGrid, what);
        RunPending();
    }
    PrintRow(what, "literal", product, reference, goal);
}

void WatchCpuRow()
{
    constexpr int pairs = 5;
    constexpr unsigned seconds = 5;
    const VarPages pages;
    pages.LoadProduct(WatchList());
    Answer20(*pages.product, 1);
    pages.reference->Hide();
    RunPending();
    const auto run = [](const Work& tick) {
        Ticker ticker(tickMs, tick);
        CpuOfLoop(seconds);
    };
    const double ratio = CpuRatio(
        pairs, {[&] { run([&] { Answer20(*pages.product, 1); }); }}, {[&] { run([] {}); }});
    PrintRow("processor, 20 unchanged answers at 10 Hz", "idle", ratio, 3);
}

} // namespace

std::vector<Row> WatchRows()
{
    return {
        {"watch-changed", [] { WatchTickRow("tick with 20 changed answers", 7, 0.08); }},
        {"watch-unchanged", [] { WatchTickRow("tick with 20 unchanged answers", 0, 0.02); }},
        {"watch-cpu", WatchCpuRow}};
}

} // namespace bench
