#pragma once

#include "bottling/bottling.h"
#include "controller.h"
#include "operator_panel.h"
#include "program.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

// A soft PLC with its process, and the panel with switches and lamps. No windows. Any thread.

namespace plclink {

/// What the panel shows, as of the last cycle.
struct PanelState
{
    std::vector<bool> switches;
    std::vector<bool> lamps;
};

class Plant
{
public:
    /// Begins in STOP. The bottling line has its own panel and can be looked at; any other program
    /// has its first inputs as switches and its first outputs as lamps.
    /// @param process may be null: the program alone.
    /// @param afterCycle runs on the PLC thread after every cycle.
    Plant(
        plc::Program program,
        std::unique_ptr<plc::Process> process,
        plc::Controller::AfterCycle afterCycle,
        std::chrono::milliseconds period);

    const std::vector<samples::PanelSwitch>& Switches() const { return m_switches; }

    const std::vector<samples::PanelLamp>& Lamps() const { return m_lamps; }

    void Start() { m_controller->Start(); }

    void Stop() { m_controller->Stop(); }

    plc::ControllerStatus Status() const { return m_controller->Status(); }

    /// Runs @p work on the PLC thread before the next cycle, also in STOP.
    void Post(std::function<void(plc::Image&)> work) { m_controller->Post(std::move(work)); }

    void SetSwitch(std::size_t place, bool on);
    PanelState Panel() const;

    /// The bottling line as one looks at it; nothing of another machine.
    std::optional<samples::BottlingView> Line() const;

private:
    void ReadPanel(const plc::Image& image);

    const samples::BottlingLine* const m_line; ///< Belongs to the controller; may be null.
    const std::vector<samples::PanelSwitch> m_switches;
    const std::vector<samples::PanelLamp> m_lamps;
    const std::vector<plc::Cell> m_switchCells;
    const std::vector<plc::Cell> m_lampCells;

    mutable std::mutex m_mutex; ///< Guards m_panel.
    PanelState m_panel;
    std::unique_ptr<plc::Controller> m_controller; ///< Last: its thread uses all of the above.
};

} // namespace plclink
