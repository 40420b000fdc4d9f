#include "descendants.h"
#include "plcdebug.h"
#include "plcdebug_host.h"
#include "plcdebugframe_drain.h"
#include "recordinghost.h"
#include "tempdir.h"
#include "waitfor.h"
#include "windowrows.h"

#include <gtk/gtk.h>
#include <wx/frame.h>
#include <wx/notebook.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <thread>
#include <unistd.h>

// Hosts that answer faster than anybody can look: eight threads, 50,000 answers a second each.

namespace bench {

namespace {

constexpr unsigned floodSeconds = 30;
constexpr int floodThreads = 8;
constexpr int watchedVars = 20;
constexpr int allKeys = 65536;
constexpr double megabyte = 1024 * 1024;
constexpr double millisecond = 1e-3;

/// One of a kind of flood's answers; numbers count from 0 in each thread.
using AnswerOf = std::function<CMD_DATA(int number)>;

/// Takes what is answered, as an export does.
using Taker = std::function<void(const CMD_DATA& answer)>;

CMD_DATA StateAnswer(std::int32_t first, std::int32_t last, int number)
{
    const std::vector<std::uint8_t> states(PLC_MAX_STEPS, static_cast<std::uint8_t>(number % 2));
    const std::vector<std::int32_t> values(PLC_MAX_STEPS, number);
    return PlcMakePrgStateAnswer(first, last, states.data(), values.data());
}

/// Threads that answer for as long as the object lives.
class Flood
{
public:
    Flood(const AnswerOf& answerOf, const Taker& taker)
    {
        for (int i = 0; i < floodThreads; ++i) {
            m_threads.emplace_back([this, answerOf, taker] { Answer(answerOf, taker); });
        }
    }

    ~Flood()
    {
        m_stop = true;
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }

    Flood(const Flood&) = delete;
    Flood(Flood&&) = delete;
    Flood& operator=(const Flood&) = delete;
    Flood& operator=(Flood&&) = delete;

private:
    void Answer(const AnswerOf& answerOf, const Taker& taker) const
    {
        constexpr int burst = 50;
        constexpr std::chrono::milliseconds period(1);
        auto next = std::chrono::steady_clock::now();
        for (int number = 0; !m_stop; number += burst) {
            for (int i = 0; i < burst; ++i) {
                taker(answerOf(number + i));
            }
            next += period;
            std::this_thread::sleep_until(next);
        }
    }

    std::atomic<bool> m_stop = false;
    std::vector<std::thread> m_threads;
};

/// @return what of this process is in memory, in bytes.
double ResidentBytes()
{
    double pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

/// What a flood has done to the debugger, each over its goal's unit.
struct Effects
{
    double processor = 0;           ///< Seconds.
    std::vector<double> tickToTick; ///< Seconds.
    double memory = 0;              ///< Bytes above the start, at most.
    double untilShown = 0;          ///< Seconds from its end until the newest values are shown.
};

/// The debugger with 20 variables and a block, open.
class Debugger
{
public:
    Debugger()
    {
        std::string list;
        for (int i = 0; i < watchedVars; ++i) {
            list += "MD" + std::to_string(4 * i) + "/D\n";
        }
        m_dir.Write("plcdebug.ini", "[Settings]\nPLCLastFile=" + m_dir.Write("list.plc", list));
        m_dir.Write("prog_plcdbgi.dat", DebugFile({Block(manyLines)}));
        ExportCreatePlcDebugger(&m_host.init);
        m_frame = dynamic_cast<wxFrame*>(wxTopLevelWindows.GetLast()->GetData());
        WaitThreeTicks();
    }

    ~Debugger()
    {
        ExportDestroyPlcDebugger();
        RunPending();
    }

    Debugger(const Debugger&) = delete;
    Debugger(Debugger&&) = delete;
    Debugger& operator=(const Debugger&) = delete;
    Debugger& operator=(Debugger&&) = delete;

    wxFrame& Frame() const { return *m_frame; }

    /// @return the request for the steps that the program page shows.
    CMD_DATA ShowProgram()
    {
        FirstOf<wxNotebook>(*m_frame)->SetSelection(1);
        WaitThreeTicks();
        return m_host.requests.back().record;
    }

    bool ShowsEverywhere(const wxString& value) const
    {
        const auto* grid = FirstOf<wxGrid>(*m_frame);
        for (int row = 0; row < watchedVars; ++row) {
            if (grid->GetCellValue(row, 1) != value) {
                return false;
            }
        }
        return true;
    }

private:
    TempDir m_dir;
    RecordingHost m_host{m_dir.File("prog")};
    wxFrame* m_frame; // not owned
};

void TakeByExports(const CMD_DATA& answer)
{
    CMD_DATA copy = answer;
    auto* bytes = reinterpret_cast<unsigned char*>(&copy);
    if (answer.command == PLC_CMD_PRG_STATE) {
        ExportAnswerProgState(bytes);
    } else {
        ExportAnswerReadVar(bytes);
    }
}

Effects EffectsOf(const Debugger& debugger, const AnswerOf& answerOf)
{
    constexpr int newest = 4711;
    constexpr int lookMs = 5;
    Effects effects;
    const double before = ResidentBytes();
    double lastTick = WallNow();
    const auto noteTick = [&](wxTimerEvent& event) {
        effects.tickToTick.push_back(WallNow() - lastTick);
        lastTick = WallNow();
        effects.memory = std::max(effects.memory, ResidentBytes() - before);
        event.Skip();
    };
    debugger.Frame().Bind(wxEVT_TIMER, noteTick);
    {
        const Flood flood(answerOf, TakeByExports);
        effects.processor = CpuOfLoop(floodSeconds);
    }
    const double end = WallNow();
    for (std::uint16_t key = 0; key < watchedVars; ++key) {
        TakeByExports(PlcMakeReadAnswer(key, newest));
    }
    Ticker look(lookMs, [&] {
        if (debugger.ShowsEverywhere(std::to_string(newest))) {
            gtk_main_quit();
        }
    });
    gtk_main();
    effects.untilShown = WallNow() - end;
    debugger.Frame().Unbind(wxEVT_TIMER, noteTick);
    return effects;
}

/// @return processor seconds of the same flood into a queue that is emptied at every tick.
double ProcessorOfBareQueue(const AnswerOf& answerOf)
{
    KtValueQueue<CMD_DATA> queue;
    Ticker ticker(tickMs, [&queue] { queue.TakeAll(); });
    const Flood flood(answerOf, [&queue](const CMD_DATA& answer) { queue.Push(answer); });
    return CpuOfLoop(floodSeconds);
}

void FloodRow(const std::string& kind, const Debugger& debugger, const AnswerOf& answerOf)
{
    constexpr double mostOfTicks = 0.99;
    const Effects effects = EffectsOf(debugger, answerOf);
    const auto print = [&kind](const char* what, const char* unit, double value, double goal) {
        PrintRow("flood of " + kind + ": " + what, unit, value, goal);
    };
    print("processor", "the bare queue", effects.processor / ProcessorOfBareQueue(answerOf), 1.5);
    const auto& ticks = effects.tickToTick;
    print(
        "from tick to tick, 99th percentile",
        "ms",
        Percentile(ticks, mostOfTicks) / millisecond,
        350);
    print(
        "from tick to tick, at most",
        "ms",
        *std::max_element(ticks.begin(), ticks.end()) / millisecond,
        1000);
    print("memory above the start, at most", "MB", effects.memory / megabyte, 100);
    print("the newest values shown after it", "ms", effects.untilShown / millisecond, 1000);
}

void AllFloods()
{
    const auto readAnswer = [](int keys) {
        return [keys](int number) {
            return PlcMakeReadAnswer(static_cast<std::uint16_t>(number % keys), number);
        };
    };
    {
        const Debugger debugger;
        FloodRow("20 watched keys", debugger, readAnswer(watchedVars));
    }
    {
        const Debugger debugger;
        FloodRow("65,536 keys", debugger, readAnswer(allKeys));
    }
    {
        Debugger debugger;
        const CMD_DATA request = debugger.ShowProgram();
        FloodRow("the subscribed steps", debugger, [&request](int number) {
            return StateAnswer(PlcFirstStep(&request), PlcLastStep(&request), number);
        });
    }
    {
        const Debugger debugger;
        FloodRow("65,536 ranges of steps", debugger, [](int number) {
            const int first = number % allKeys;
            return StateAnswer(first, first + PLC_MAX_STEPS - 1, number);
        });
    }
}

} // namespace

std::vector<Row> FloodRows()
{
    return {{"flood", AllFloods}};
}

} // namespace bench
