#pragma once

#include "assembler.h"
#include "bottling/bottling.h"
#include "controller.h"
#include "operator_panel.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

// The machine that the host controls: soft PLC, process, and the panel with switches and lamps.
// No windows. Any thread.

namespace plchost {

/// What the panel shows, as of the last cycle.
struct PanelState
{
    std::vector<bool> switches;
    std::vector<bool> lamps;
};

class Plant
{
public:
    /// The bottling line, in STOP.
    /// @param afterCycle runs on the PLC thread after every cycle.
    static std::unique_ptr<Plant> Bottling(
        plc::Program program,
        plc::Controller::AfterCycle afterCycle,
        std::chrono::milliseconds period);

    /// A program alone, in STOP; its panel has the first inputs and outputs.
    static std::unique_ptr<Plant> Bare(
        plc::Program program,
        plc::Controller::AfterCycle afterCycle,
        std::chrono::milliseconds period);

    const std::vector<samples::PanelSwitch>& Switches() const { return m_switches; }

    const std::vector<samples::PanelLamp>& Lamps() const { return m_lamps; }

    void Start() { m_controller->Start(); }

    void Stop() { m_controller->Stop(); }

    plc::ControllerStatus Status() const { return m_controller->Status(); }

    void SetSwitch(std::size_t place, bool on);
    PanelState Panel() const;

    /// The line as one looks at it; nothing when the program runs alone.
    std::optional<samples::BottlingView> Line() const;

private:
    Plant(std::vector<samples::PanelSwitch> switches, std::vector<samples::PanelLamp> lamps);
    void
    Run(plc::Program program,
        std::unique_ptr<plc::Process> process,
        plc::Controller::AfterCycle afterCycle,
        std::chrono::milliseconds period);
    void ReadPanel(const plc::Image& image);

    const std::vector<samples::PanelSwitch> m_switches;
    const std::vector<samples::PanelLamp> m_lamps;
    std::vector<plc::Cell> m_switchCells;
    std::vector<plc::Cell> m_lampCells;
    const samples::BottlingLine* m_line = nullptr; ///< Belongs to the controller; may be null.

    mutable std::mutex m_mutex; ///< Guards m_panel.
    PanelState m_panel;
    std::unique_ptr<plc::Controller> m_controller; ///< Last: its thread uses all of the above.
};

} // namespace plchost
