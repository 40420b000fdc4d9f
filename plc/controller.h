#pragma once

#include "cyclic_program.h"
#include "process.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

// The soft PLC: runs a program and its process in a thread of its own. Any thread.

namespace plc {

/// What a controller is doing. Times are those of the work in a cycle, without the waiting.
struct ControllerStatus
{
    bool running = false;               ///< RUN, else STOP.
    std::optional<StopReason> stopped;  ///< Why the program stopped itself; cleared by Start().
    std::uint64_t cycles = 0;           ///< Cycles of the program since construction.
    std::chrono::microseconds last{0};  ///< The last cycle of the program.
    std::chrono::microseconds max{0};   ///< The longest since Start().
    std::chrono::milliseconds period{}; ///< Configured distance of two cycles.
};

class Controller
{
public:
    /// Runs on the PLC thread after every cycle, and at the same pace in STOP. @p cycle is
    /// ControllerStatus::cycles. Must not call the controller's Start(), Stop() or destructor.
    using AfterCycle =
        std::function<void(Image& image, CyclicProgram& program, std::uint64_t cycle)>;

    /// Starts the thread, in STOP: the process moves, the program stands.
    /// @param process may be null.
    Controller(
        std::unique_ptr<CyclicProgram> program,
        std::unique_ptr<Process> process,
        AfterCycle afterCycle = {},
        std::chrono::milliseconds period = std::chrono::milliseconds{10});
    Controller(const Controller&) = delete;
    Controller(Controller&&) = delete;
    Controller& operator=(const Controller&) = delete;
    Controller& operator=(Controller&&) = delete;
    /// Ends the thread after the cycle under way; what was posted and not yet run is dropped.
    ~Controller();

    /// RUN from the next cycle on. Keeps the image, so that the machine goes on where it was.
    void Start();
    /// STOP from the next cycle on: all outputs off.
    void Stop();
    ControllerStatus Status() const;

    /// Runs @p work on the PLC thread before the next cycle, also in STOP, in the order of posting.
    void Post(std::function<void(Image&)> work);

private:
    void Run();
    void RunOneCycle(std::chrono::milliseconds elapsed);
    std::vector<std::function<void(Image&)>> TakePosted();

    const std::unique_ptr<CyclicProgram> m_program;
    const std::unique_ptr<Process> m_process; ///< May be null.
    const AfterCycle m_afterCycle;
    Image m_image; ///< PLC thread only.

    mutable std::mutex m_mutex; ///< Guards what follows, but the thread.
    std::condition_variable m_wake;
    ControllerStatus m_status;
    std::vector<std::function<void(Image&)>> m_posted;
    bool m_end = false;
    std::thread m_thread; ///< Last, so that it finds everything else built.
};

} // namespace plc
