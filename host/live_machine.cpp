#include "live_machine.h"

#include "live_window.h"

#include <utility>

namespace plchost {

namespace {

constexpr unsigned startButtonMs = 500;

} // namespace

LiveMachine::LiveMachine(
    const Options& options,
    plc::Program program,
    AnswerSink& answers,
    std::function<void()> tick,
    Bridge::Log log)
    : m_bridge(answers, std::move(log)), m_hasStartButton(options.program.empty())
{
    const auto afterCycle = [this, tick = std::move(tick)](
                                plc::Image& image, plc::CyclicProgram& cyclic, std::uint64_t n) {
        m_bridge.AfterCycle(image, cyclic, n, Bridge::Clock::now());
        tick();
    };
    m_plant = options.program.empty()
                  ? Plant::Bottling(std::move(program), afterCycle, options.cycle)
                  : Plant::Bare(std::move(program), afterCycle, options.cycle);
}

void LiveMachine::OnDebugger(bool open)
{
    if (!open) {
        m_bridge.Forget();
    }
}

void LiveMachine::Start()
{
    m_plant->Start();
    if (m_hasStartButton) {
        PressStart();
    }
}

/// Starts the line as the operator would, so that it needs nobody.
void LiveMachine::PressStart()
{
    m_plant->SetSwitch(0, true);
    m_timers.Once(startButtonMs, [this] { m_plant->SetSwitch(0, false); });
}

std::unique_ptr<HostWindow>
LiveMachine::MakeWindow(const std::string& language, WindowActions actions)
{
    return std::make_unique<LiveWindow>(*m_plant, language, std::move(actions));
}

} // namespace plchost
