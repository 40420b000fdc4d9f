#pragma once

#include "machine_link.h"
#include "texts.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What the window says of the link: how well the machine is reached, and how old each value is.
// Values and texts. Any thread.

namespace plchost {

/// An operand that is watched, as it is shown.
struct ShownOperand
{
    std::string operand{};
    std::string value = "?"; ///< As the machine has it, whatever format a list gives it.
    std::string age{};       ///< Of the newest reading; empty before the first one.
    std::string oldSince{};  ///< Time of day of that reading, when it is old; else empty.
    std::string refusal{};   ///< Why the machine does not let it be read.
};

struct LinkView
{
    plclink::LinkState state{};
    std::uint64_t answersPerSecond = 0;
    plclink::MessageLosses losses{};
    std::vector<ShownOperand> operands{};
};

/// A reading is old from this age on.
/// @param turn see Source::TurnTime().
std::chrono::milliseconds OldAge(std::chrono::milliseconds turn);

/// "12.3 s", "2 min 05 s", "3 h 07 min".
std::string AgeText(std::chrono::milliseconds age);

/// "1029 (0x0405)": signed as in the debugger, then its bits; "1" for a bit.
std::string ValueText(const plc::Operand& operand, std::uint32_t value);

/// "14:03:07", of the zone of this machine.
std::string TimeOfDayText(std::chrono::system_clock::time_point time);

ShownOperand Shown(
    const plclink::WatchedOperand& watched,
    std::chrono::milliseconds oldAge,
    plclink::Clock::time_point now,
    std::chrono::system_clock::time_point today);

/// A link that says that it runs is slow when not even its youngest reading is young.
/// @param youngest age; none when there is no reading.
plclink::LinkState Judged(
    const plclink::LinkState& told,
    std::optional<std::chrono::milliseconds> youngest,
    std::chrono::milliseconds oldAge);

/// The word for the lamp.
const char* StatusWord(const HostTexts& texts, plclink::LinkStatus status);

/// "8 operands, 3 of them old".
std::string CountText(const HostTexts& texts, const std::vector<ShownOperand>& operands);

/// "lost messages: 3, unusable ones: 1"; empty when there are none.
std::string LossText(const HostTexts& texts, const plclink::MessageLosses& losses);

/// What is to be said beside a value; empty for one that is young.
std::string NoteText(const HostTexts& texts, const ShownOperand& operand);

/// "the link is lost: REASON".
std::string StateSentence(const plclink::LinkState& state);

/// How much of what is counted came in the last full second.
class PerSecond
{
public:
    /// To be called some times each second.
    std::uint64_t Count(std::uint64_t total, plclink::Clock::time_point now);

private:
    std::optional<plclink::Clock::time_point> m_since;
    std::uint64_t m_total = 0; ///< As it was then.
    std::uint64_t m_last = 0;
};

} // namespace plchost
