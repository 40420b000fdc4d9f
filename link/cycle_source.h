#pragma once

#include "cyclic_program.h"
#include "image.h"
#include "source.h"

#include <atomic>
#include <cstdint>
#include <mutex>

// A PLC that runs in this process, cycle by cycle, as a machine. No windows.

namespace plclink {

/// Program states that change are told this far apart, as near as the cycle allows: the debugger
/// looks at its answers every 100 ms.
constexpr std::chrono::milliseconds stateTimeApart{50};

/// Program states that do not change are told again after this time.
constexpr std::chrono::milliseconds stateRefreshTime{200};

/// The source's thread is the PLC's: everything is told inside AfterCycle().
class CycleSource : public Source
{
public:
    CycleSource() = default;
    ~CycleSource() override;
    CycleSource(const CycleSource&) = delete;
    CycleSource(CycleSource&&) = delete;
    CycleSource& operator=(const CycleSource&) = delete;
    CycleSource& operator=(CycleSource&&) = delete;

    void Start(SourceEvents& events) override;
    base::Result<void> Check(const plc::Operand& operand) const override;
    void Watch(std::shared_ptr<const WatchList> list) override;
    void Write(const plc::Operand& operand, std::uint32_t value, WriteDone done) override;
    void WatchSteps(std::optional<plc::StepRange> range) override;

    /// Writes what was asked for, then tells what there is to tell. To be called between two
    /// cycles, also while the PLC stands.
    /// @param cycle counts the cycles of the program; it stands while the PLC stands.
    /// [PLC thread]
    void AfterCycle(
        plc::Image& image, plc::CyclicProgram& program, std::uint64_t cycle, Clock::time_point now);

private:
    struct PendingWrite
    {
        plc::Operand operand;
        plc::Cell cell;
        std::uint32_t value;
        WriteDone done;
    };

    /// What was asked for since the last cycle.
    struct Wishes
    {
        std::shared_ptr<const WatchList> list{}; ///< Null: as before.
        std::vector<PendingWrite> writes{};
        bool otherSteps = false;
        std::optional<plc::StepRange> steps{};
    };

    struct Steps
    {
        plc::StepRange range;
        std::uint64_t cycle; ///< Last told, or in which recording began.
        bool due = true;     ///< Not told yet.
        Clock::time_point told{};
        std::vector<plc::StepState> states{}; ///< As last told.
    };

    void Wish(const std::function<void(Wishes&)>& wish);
    void Fulfil(Wishes wishes, plc::Image& image, plc::CyclicProgram& program, std::uint64_t cycle);
    void TellSteps(
        SourceEvents& events,
        const plc::CyclicProgram& program,
        std::uint64_t cycle,
        Clock::time_point now);

    std::atomic<SourceEvents*> m_events{nullptr};
    std::atomic<bool> m_hasWishes{false};
    std::mutex m_mutex; ///< Guards m_wishes.
    Wishes m_wishes;

    // Of the PLC thread.
    bool m_isRunning = false; ///< The link has been told.
    std::shared_ptr<const WatchList> m_list = std::make_shared<const WatchList>();
    std::vector<plc::Cell> m_cells; ///< One for each operand of the list, as are the readings.
    std::vector<PlacedReading> m_readings;
    std::optional<Steps> m_steps;
    Clock::time_point m_afterCycle; ///< The last AfterCycle().
};

} // namespace plclink
