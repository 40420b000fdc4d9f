#pragma once

#include "operand.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// The process image: every operand's current value. Belongs to one thread at a time; with a
// Controller that is the PLC thread.

namespace plc {

/// Timer and counter values run from 0 to this.
constexpr std::uint16_t maxCount = 32767;

/// Timers count in this unit.
constexpr std::chrono::milliseconds timerUnit{10};

/// How a timer's output follows its input.
enum class TimerKind : std::uint8_t
{
    Pulse,   ///< On with the input, at most for the time.
    OnDelay, ///< On when the input has been on for the time.
    OffDelay ///< On with the input and for the time after it.
};

class Timer
{
public:
    /// Hands the timer its input for this cycle. @p units is the time in units of 10 ms, taken at
    /// the edge that starts the timer; a negative one counts as 0.
    void Drive(TimerKind kind, bool input, std::int16_t units);
    /// Stops it: time 0, output off.
    void Reset();
    void Advance(std::chrono::milliseconds elapsed);

    bool IsOn() const { return m_output; }

    /// Time left in units of 10 ms, begun ones whole; 0 when it does not run.
    std::uint16_t Value() const;
    /// Gives a running timer another time left; one that stands stays as it is.
    void SetValue(std::uint16_t units);

private:
    void Run(std::int16_t units);
    void Expire();

    std::chrono::milliseconds m_left{0};
    TimerKind m_kind = TimerKind::Pulse;
    bool m_running = false;
    bool m_input = false;
    bool m_output = false;
};

/// Counts from 0 to maxCount and stops at both ends. Up, down and set act on rising edges.
class Counter
{
public:
    void Up(bool input);
    void Down(bool input);
    /// @p value is taken at the edge; a negative one counts as 0.
    void Set(bool input, std::int16_t value);

    void Reset() { m_value = 0; }

    /// On while it counts more than 0.
    bool IsOn() const { return m_value > 0; }

    std::uint16_t Value() const { return m_value; }

    /// Limited to maxCount.
    void SetValue(std::uint16_t value);

private:
    std::uint16_t m_value = 0;
    bool m_upInput = false;
    bool m_downInput = false;
    bool m_setInput = false;
};

/// Where an operand lies in the image, looked up once so that a cycle need not do it again.
struct Cell
{
    enum class Kind : std::uint8_t
    {
        Memory,
        Timer,
        Counter
    };

    Kind kind = Kind::Memory;
    Width width = Width::Bit;
    std::uint8_t bit = 0;
    std::uint32_t index = 0; ///< First byte in the image, or the number of the timer or counter.
};

class Image
{
public:
    /// Everything 0.
    Image();

    /// @return nothing for an operand that does not exist.
    static std::optional<Cell> Find(const Operand& operand);
    /// The cell of an operand known to exist, by name.
    /// @throws std::invalid_argument when it does not: a mistake in the calling code.
    static Cell CellOf(std::string_view name);

    /// 0 or 1 for a bit; bytes and words without sign; timers and counters their current value.
    std::uint32_t Read(const Cell& cell) const;
    /// Takes the lowest bits of @p value that fit the cell; a bit its lowest one.
    void Write(const Cell& cell, std::uint32_t value);
    /// A bit, or the output of a timer or counter.
    bool IsOn(const Cell& cell) const;

    /// @return nothing for an operand that does not exist.
    std::optional<std::uint32_t> Read(const Operand& operand) const;
    /// @return false, and nothing written, for an operand that does not exist.
    bool Write(const Operand& operand, std::uint32_t value);

    Timer& TimerAt(std::uint32_t number) { return m_timers.at(number); }

    Counter& CounterAt(std::uint32_t number) { return m_counters.at(number); }

    /// Lets the running timers run on.
    void AdvanceTimers(std::chrono::milliseconds elapsed);
    /// All outputs off, as in STOP.
    void ClearOutputs();

private:
    std::vector<std::uint8_t> m_bytes; ///< Outputs, inputs, flags, data blocks, back to back.
    std::vector<Timer> m_timers;
    std::vector<Counter> m_counters;
};

} // namespace plc
