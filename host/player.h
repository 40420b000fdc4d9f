#pragma once

#include "recording.h"
#include "source.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

// A recording in the place of a machine. No windows. One thread, which is the source's.

namespace plchost {

/// The debugger asks for what it likes, under keys of its own: recorded answers belong to operands
/// and steps. Each is told at its time, if its operand is watched by then; who asks later is told
/// the last one at once.
class Player : public plclink::Source
{
public:
    using Clock = plclink::Clock;

    /// @param speed 1 for the original one.
    Player(Recording recording, double speed);

    void Start(plclink::SourceEvents& events) override;
    base::Result<void> Check(const plc::Operand& operand) const override;
    void Watch(std::shared_ptr<const plclink::WatchList> list) override;
    void Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done) override;
    void WatchSteps(std::optional<plc::StepRange> range) override;

    /// Values that do not change are recorded that often.
    std::chrono::milliseconds TurnTime() const override;

    /// What was recorded has been worth an answer, also when nothing had changed.
    bool TellsEveryReading() const override { return true; }

    /// Lets the time stand until the next Advance().
    void Pause() { m_advanced.reset(); }

    /// Tells what is due. The first call starts the time. To be called after Start().
    void Advance(Clock::time_point now);

    /// Plays from the beginning again.
    void Rewind();

    /// How far it has been played; stays at Length() at the end.
    std::chrono::microseconds Position() const;
    std::chrono::microseconds Length() const;

private:
    struct Steps
    {
        plc::StepRange range;
        bool due = true; ///< The last states have not been told yet.
    };

    /// An operand that is watched.
    struct Watched
    {
        std::size_t operand; ///< Its place among the recorded ones.
        bool due;            ///< Its last value has not been told yet.
    };

    std::optional<std::size_t> Find(const plc::Operand& operand) const;
    void Play(const RecordedEvent& event);
    void PlayRequest(const CMD_DATA& request);
    void PlayReadAnswer(const CMD_DATA& answer);
    void PlayStates(const CMD_DATA& answer);
    void TellValue(std::size_t place);
    void TellSteps();

    const Recording m_recording;
    const std::vector<plc::Operand> m_operands; ///< That the recording has been asked for.
    const double m_speed;
    plclink::SourceEvents* m_events = nullptr; ///< Outlives this, once there is one.

    // What the recorded host had said up to now.
    std::optional<Clock::time_point> m_advanced; ///< Last look at the clock.
    std::chrono::duration<double, std::micro> m_position{0};
    std::size_t m_next = 0; ///< The event to be played next.
    std::map<std::uint16_t, std::optional<std::size_t>> m_recorded; ///< Operands by recorded key.
    std::optional<plc::StepRange> m_recordedSteps;
    std::vector<std::optional<plclink::Reading>> m_readings; ///< The last one of each operand.
    std::map<std::int64_t, plc::StepState> m_states;         ///< Last states by step.

    // What is asked for now.
    std::shared_ptr<const plclink::WatchList> m_list;
    std::vector<Watched> m_watched; ///< One for each operand of the list.
    std::optional<Steps> m_steps;
};

} // namespace plchost
