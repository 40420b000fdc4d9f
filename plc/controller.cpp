#include "controller.h"

#include "cycle_time.h"

#include <algorithm>
#include <utility>

namespace plc {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::duration_cast;
using std::chrono::microseconds;
using std::chrono::milliseconds;

} // namespace

Controller::Controller(
    std::unique_ptr<CyclicProgram> program,
    std::unique_ptr<Process> process,
    AfterCycle afterCycle,
    milliseconds period)
    : m_program(std::move(program)), m_process(std::move(process)),
      m_afterCycle(std::move(afterCycle))
{
    m_status.period = period;
    m_thread = std::thread([this] { Run(); });
}

Controller::~Controller()
{
    {
        const std::lock_guard lock(m_mutex);
        m_end = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void Controller::Start()
{
    const std::lock_guard lock(m_mutex);
    if (m_status.running) {
        return;
    }
    m_status.running = true;
    m_status.stopped.reset();
    m_status.max = {};
}

void Controller::Stop()
{
    const std::lock_guard lock(m_mutex);
    m_status.running = false;
}

ControllerStatus Controller::Status() const
{
    const std::lock_guard lock(m_mutex);
    return m_status;
}

void Controller::Post(std::function<void(Image&)> work)
{
    const std::lock_guard lock(m_mutex);
    m_posted.push_back(std::move(work));
}

std::vector<std::function<void(Image&)>> Controller::TakePosted()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_posted, {});
}

void Controller::Run()
{
    const auto period = Status().period;
    auto due = Clock::now();
    CycleTime time(due, period);
    if (m_process) {
        m_process->PowerOn(m_image);
    }
    for (;;) {
        RunOneCycle(time.Pass(Clock::now()));

        // A cycle that took longer than its period puts off the next one; none is made up for.
        due = std::max(due + period, Clock::now());
        std::unique_lock lock(m_mutex);
        if (m_wake.wait_until(lock, due, [this] { return m_end; })) {
            return;
        }
    }
}

void Controller::RunOneCycle(milliseconds elapsed)
{
    for (const auto& work : TakePosted()) {
        work(m_image);
    }
    const bool running = Status().running;
    const auto begin = Clock::now();
    if (m_process) {
        MoveOn(*m_process, m_image, elapsed);
    }
    const auto stopped = running ? m_program->RunCycle(m_image, elapsed) : std::nullopt;
    if (!running || stopped) {
        m_image.ClearOutputs();
    }
    const auto duration = duration_cast<microseconds>(Clock::now() - begin);

    std::uint64_t cycle = 0;
    {
        const std::lock_guard lock(m_mutex); // Status() and Start() wait for these few words only.
        if (running) {
            ++m_status.cycles;
            m_status.last = duration;
            m_status.max = std::max(m_status.max, duration);
        }
        if (stopped) {
            m_status.running = false;
            m_status.stopped = stopped;
        }
        cycle = m_status.cycles;
    }
    if (m_afterCycle) {
        m_afterCycle(m_image, *m_program, cycle);
    }
}

} // namespace plc
