#pragma once

#include "cycle_source.h"
#include "plant.h"
#include "sample_machines.h"

#include <functional>
#include <memory>

// The soft PLC as a machine. No windows.

namespace plclink {

class SoftPlc : public CycleSource
{
public:
    /// Begins in STOP.
    /// @param sample the machine that the program is for; null: the program alone.
    /// @param tick runs on the PLC thread once in each cycle; may be empty.
    SoftPlc(
        plc::Program program,
        const samples::SampleMachine* sample,
        std::chrono::milliseconds period,
        std::function<void()> tick = {});

    /// Also starts the PLC, and the sample as its operator would, so that it needs nobody.
    void Start(SourceEvents& events) override;

    std::chrono::milliseconds TurnTime() const override { return m_period; }

    /// [any-thread]
    Plant& Machine() { return *m_plant; }

private:
    void OnCycle(plc::Image& image, plc::CyclicProgram& program, std::uint64_t cycle);
    void OperateSample(plc::Image& image);

    const samples::SampleMachine* const m_sample; ///< Lives as long as the process; may be null.
    const std::chrono::milliseconds m_period;
    const std::function<void()> m_tick;
    std::optional<Clock::time_point> m_released; ///< When the start button is; PLC thread.
    std::unique_ptr<Plant> m_plant;              ///< Last: its thread uses all of the above.
};

} // namespace plclink
