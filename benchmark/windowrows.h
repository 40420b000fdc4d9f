#pragma once

#include "debugfile.h"
#include "measure.h"

#include <wx/grid.h>
#include <wx/timer.h>

#include <string>
#include <utility>
#include <vector>

// The rows that need windows, by what they measure. GUI thread.

namespace bench {

constexpr int manyLines = 65535;
constexpr int fewLines = 100;
constexpr unsigned tickMs = 100;

std::vector<Row> WatchRows();
std::vector<Row> ProgramRows();
std::vector<Row> FrameRows();
std::vector<Row> FloodRows();

/// @return a block of so many lines, of which every tenth is not executable.
DebugFileBlock Block(int lineCount);

/// Ends the program with a message unless all that can be seen of both grids is the same.
void RequireSameGrids(const wxGrid& product, const wxGrid& reference, const std::string& what);

/// Calls something again and again while a host's loop runs.
class Ticker : public wxTimer
{
public:
    Ticker(int periodMs, Work tick) : m_tick(std::move(tick)) { Start(periodMs); }

    void Notify() override
    {
        ++count;
        m_tick();
    }

    int count = 0;

private:
    Work m_tick;
};

/// @return processor time that the host's loop takes in so many seconds of time.
double CpuOfLoop(unsigned seconds);

} // namespace bench
