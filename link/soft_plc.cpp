#include "soft_plc.h"

#include <utility>

namespace plclink {

namespace {

constexpr std::chrono::milliseconds startButtonTime{500};

} // namespace

SoftPlc::SoftPlc(
    plc::Program program,
    const samples::SampleMachine* sample,
    std::chrono::milliseconds period,
    std::function<void()> tick)
    : m_sample(sample), m_period(period), m_tick(std::move(tick)),
      m_plant(std::make_unique<Plant>(
          std::move(program),
          sample == nullptr ? nullptr : sample->makeProcess(),
          [this](plc::Image& image, plc::CyclicProgram& running, std::uint64_t cycle) {
              OnCycle(image, running, cycle);
          },
          period))
{
}

void SoftPlc::Start(SourceEvents& events)
{
    CycleSource::Start(events);
    m_plant->Start();
    if (m_sample != nullptr) {
        m_plant->Post([this](plc::Image& image) { OperateSample(image); });
    }
}

/// [PLC thread]
void SoftPlc::OperateSample(plc::Image& image)
{
    if (!m_sample->startSwitch.empty()) {
        image.Write(plc::Image::CellOf(m_sample->startSwitch), 1);
    }
    if (!m_sample->startButton.empty()) {
        image.Write(plc::Image::CellOf(m_sample->startButton), 1);
        m_released = Clock::now() + startButtonTime;
    }
}

void SoftPlc::OnCycle(plc::Image& image, plc::CyclicProgram& program, std::uint64_t cycle)
{
    const auto now = Clock::now();
    if (m_released && now >= *m_released) {
        m_released.reset();
        image.Write(plc::Image::CellOf(m_sample->startButton), 0);
    }
    CycleSource::AfterCycle(image, program, cycle, now);
    if (m_tick) {
        m_tick();
    }
}

} // namespace plclink
