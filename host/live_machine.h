#pragma once

#include "bridge.h"
#include "machine.h"
#include "options.h"
#include "plant.h"
#include "timers.h"

#include <functional>

// The machine that the host controls with its soft PLC. GUI thread.

namespace plchost {

class LiveMachine : public Machine
{
public:
    /// @param answers outlives the machine.
    /// @param tick runs on the PLC thread once in each cycle.
    /// @param log takes what could not be served.
    LiveMachine(
        const Options& options,
        plc::Program program,
        AnswerSink& answers,
        std::function<void()> tick,
        Bridge::Log log);

    RequestHandler& Requests() override { return m_bridge; }

    void OnDebugger(bool open) override;

    void Start() override;
    std::unique_ptr<HostWindow>
    MakeWindow(const std::string& language, WindowActions actions) override;

private:
    void PressStart();

    Bridge m_bridge;
    const bool m_hasStartButton;
    std::unique_ptr<Plant> m_plant; ///< Its thread uses what stands above.
    Timers m_timers;
};

} // namespace plchost
