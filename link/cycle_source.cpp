#include "cycle_source.h"

#include <utility>

namespace plclink {

namespace {

std::uint32_t BitsOf(plc::Width width, std::uint32_t value)
{
    switch (width) {
    case plc::Width::Bit:
        return value & 1U;
    case plc::Width::Byte:
        return static_cast<std::uint8_t>(value);
    case plc::Width::Word:
        return static_cast<std::uint16_t>(value);
    case plc::Width::DoubleWord:
        break;
    }
    return value;
}

std::string Unknown(const plc::Operand& operand)
{
    return "this PLC has no operand \"" + plc::OperandName(operand) + '"';
}

} // namespace

CycleSource::~CycleSource()
{
    for (const PendingWrite& write : m_wishes.writes) {
        write.done(base::Failure{"the PLC has ended; nothing is written"});
    }
}

void CycleSource::Start(SourceEvents& events)
{
    m_events = &events;
}

base::Result<void> CycleSource::Check(const plc::Operand& operand) const
{
    if (!plc::Exists(operand)) {
        return base::Failure{Unknown(operand)};
    }
    return {};
}

void CycleSource::Wish(const std::function<void(Wishes&)>& wish)
{
    const std::lock_guard lock(m_mutex);
    wish(m_wishes);
    m_hasWishes = true;
}

void CycleSource::Watch(std::shared_ptr<const WatchList> list)
{
    Wish([&list](Wishes& wishes) { wishes.list = std::move(list); });
}

void CycleSource::Write(const plc::Operand& operand, std::uint32_t value, WriteDone done)
{
    const auto cell = plc::Image::Find(operand);
    if (!cell) {
        done(base::Failure{Unknown(operand) + "; nothing is written"});
        return;
    }
    Wish([&](Wishes& wishes) {
        wishes.writes.push_back({operand, *cell, value, std::move(done)});
    });
}

void CycleSource::WatchSteps(std::optional<plc::StepRange> range)
{
    Wish([&range](Wishes& wishes) {
        wishes.otherSteps = true;
        wishes.steps = range;
    });
}

void CycleSource::AfterCycle(
    plc::Image& image, plc::CyclicProgram& program, std::uint64_t cycle, Clock::time_point now)
{
    SourceEvents* const events = m_events;
    if (events == nullptr) {
        return;
    }
    if (!std::exchange(m_isRunning, true)) {
        events->OnState({LinkStatus::Running});
    }
    if (m_hasWishes) {
        std::unique_lock lock(m_mutex);
        m_hasWishes = false;
        Wishes wishes = std::exchange(m_wishes, {});
        lock.unlock();
        Fulfil(std::move(wishes), image, program, cycle);
    }
    for (PlacedReading& placed : m_readings) {
        placed.reading = {image.Read(m_cells[placed.place]), now};
    }
    events->OnReadings(*m_list, m_readings);
    TellSteps(*events, program, cycle, now);
    m_afterCycle = now;
}

void CycleSource::Fulfil(
    Wishes wishes, plc::Image& image, plc::CyclicProgram& program, std::uint64_t cycle)
{
    for (const PendingWrite& write : wishes.writes) {
        image.Write(write.cell, write.value);
        const std::uint32_t after = image.Read(write.cell);
        if (after == BitsOf(write.operand.width, write.value)) {
            write.done({});
        } else {
            write.done(base::Failure{
                plc::OperandName(write.operand) + " does not take this value; it is " +
                std::to_string(after)});
        }
    }
    if (wishes.list) {
        m_list = std::move(wishes.list);
        m_cells.clear();
        m_readings.clear();
        for (const plc::Operand& operand : *m_list) {
            m_readings.push_back({m_cells.size(), {}});
            m_cells.push_back(plc::Image::Find(operand).value_or(plc::Cell{}));
        }
    }
    if (wishes.otherSteps) {
        program.Watch(wishes.steps);
        m_steps.reset();
        if (wishes.steps) {
            m_steps = Steps{*wishes.steps, cycle};
        }
    }
}

void CycleSource::TellSteps(
    SourceEvents& events,
    const plc::CyclicProgram& program,
    std::uint64_t cycle,
    Clock::time_point now)
{
    if (!m_steps || m_steps->cycle == cycle) {
        return;
    }
    Steps& steps = *m_steps;
    // Now, when that is nearer to the time than the next cycle will be.
    const auto since = now - steps.told + (now - m_afterCycle) / 2;
    if (!steps.due && since < stateTimeApart) {
        return;
    }
    const std::vector<plc::StepState>& states = program.WatchedStates();
    if (!steps.due && since < stateRefreshTime && states == steps.states) {
        return;
    }
    steps.due = !events.OnSteps(steps.range, states);
    steps.cycle = cycle;
    steps.told = now;
    steps.states = states;
}

} // namespace plclink
