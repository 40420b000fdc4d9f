#pragma once

#include "operator_panel.h"
#include "process.h"

#include <array>
#include <chrono>
#include <mutex>
#include <vector>

// The bottling line beside bottling.il: bottles on a belt, a fill valve, a storage tank.

namespace samples {

/// A bottle on the belt.
struct Bottle
{
    double position; ///< 0 at the infeed, 1 at the end of the belt.
    double level;    ///< 0 empty, 1 full; a little more when it was overfilled.
};

/// Where things stand along the belt.
constexpr double fillPosition = 0.5;
constexpr double outletPosition = 0.9;

/// The line as one looks at it.
struct BottlingView
{
    std::vector<Bottle> bottles; ///< From the infeed to the outlet.
    double tankLevel = 0;        ///< 0 empty, 1 full.
    double beltTravel = 0;       ///< Belt lengths since power-on; for drawing the moving belt.
    bool motorOn = false;
    bool valveOpen = false;
    bool supplyOpen = false; ///< The tank's supply valve.
    bool bottleAtValve = false;
    bool bottleAtOutlet = false;
    unsigned delivered = 0; ///< Bottles that have left the belt.
};

/// In the order in which a window shows them.
constexpr std::array<PanelSwitch, 7> bottlingSwitches{{
    {"E0.0", "Start", "Start", false, true},
    {"E0.1", "Stopp", "Stop", true, true},
    {"E0.2", "Not-Aus entriegelt", "Emergency stop released", true, false},
    {"E0.3", "Automatik", "Automatic", true, false},
    {"E0.4", "Quittieren", "Acknowledge", false, true},
    {"E0.5", "Flaschenzulauf", "Bottle infeed", true, false},
    {"E0.6", "Motorschutz", "Motor protection", true, false},
}};

constexpr std::array<PanelLamp, 8> bottlingLamps{{
    {"A0.0", "Bandmotor", "Belt motor"},
    {"A0.1", "Füllventil", "Fill valve"},
    {"A0.2", "Tankzulauf", "Tank supply"},
    {"A0.3", "Hupe", "Horn"},
    {"A1.0", "Betrieb", "Running"},
    {"A1.1", "Störung", "Fault"},
    {"A1.2", "Kasten voll", "Crate full"},
    {"A1.3", "Bereit", "Ready"},
}};

class BottlingLine : public plc::Process
{
public:
    void PowerOn(plc::Image& image) override;
    void Advance(plc::Image& image, std::chrono::milliseconds elapsed) override;

    /// A copy of what there is to see after the last cycle.  Any thread.
    BottlingView View() const;

private:
    void MoveBelt(double seconds, bool infeed);
    void Fill(double seconds);

    BottlingView m_line; ///< PLC thread only.
    double m_speed = 0;  ///< Belt lengths a second.
    mutable std::mutex m_mutex;
    BottlingView m_view; ///< Guarded by m_mutex.
};

} // namespace samples
