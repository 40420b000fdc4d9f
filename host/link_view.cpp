#include "link_view.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace plchost {

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

constexpr milliseconds usualOldAge{1000};
constexpr int turnsUntilOld = 3;
constexpr std::size_t textSize = 32;

template <typename... Numbers> std::string Formatted(const char* format, Numbers... numbers)
{
    std::array<char, textSize> text{};
    std::snprintf(text.data(), text.size(), format, numbers...);
    return text.data();
}

std::int32_t Signed(plc::Width width, std::uint32_t value)
{
    switch (width) {
    case plc::Width::Byte:
        return static_cast<std::int8_t>(value);
    case plc::Width::Word:
        return static_cast<std::int16_t>(value);
    default:
        return static_cast<std::int32_t>(value);
    }
}

int HexDigits(plc::Width width)
{
    switch (width) {
    case plc::Width::Byte:
        return 2;
    case plc::Width::Word:
        return 4;
    default:
        return 8;
    }
}

milliseconds AgeOf(const plclink::Reading& reading, plclink::Clock::time_point now)
{
    return std::max(duration_cast<milliseconds>(now - reading.taken), milliseconds{0});
}

} // namespace

milliseconds OldAge(milliseconds turn)
{
    return std::max(usualOldAge, turnsUntilOld * turn);
}

std::string AgeText(milliseconds age)
{
    constexpr std::int64_t minute = 60;
    constexpr std::int64_t hour = 60 * minute;
    constexpr std::int64_t tenth = 100; // of a second, in milliseconds
    const std::int64_t seconds = age.count() / milliseconds::period::den;
    if (seconds >= hour) {
        return Formatted(
            "%lld h %02lld min",
            static_cast<long long>(seconds / hour),
            static_cast<long long>(seconds % hour / minute));
    }
    if (seconds >= minute) {
        return Formatted(
            "%lld min %02lld s",
            static_cast<long long>(seconds / minute),
            static_cast<long long>(seconds % minute));
    }
    return std::to_string(seconds) + '.' +
           std::to_string(age.count() % milliseconds::period::den / tenth) + " s";
}

std::string ValueText(const plc::Operand& operand, std::uint32_t value)
{
    if (operand.width == plc::Width::Bit) {
        return std::to_string(value);
    }
    return std::to_string(Signed(operand.width, value)) +
           Formatted(" (0x%0*X)", HexDigits(operand.width), value);
}

std::string TimeOfDayText(std::chrono::system_clock::time_point time)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return Formatted("%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);
}

ShownOperand Shown(
    const plclink::WatchedOperand& watched,
    milliseconds oldAge,
    plclink::Clock::time_point now,
    std::chrono::system_clock::time_point today)
{
    ShownOperand shown;
    shown.operand = plc::OperandName(watched.operand);
    shown.refusal = watched.refusal;
    if (watched.newest) {
        const milliseconds age = AgeOf(*watched.newest, now);
        shown.value = ValueText(watched.operand, watched.newest->value);
        shown.age = AgeText(age);
        if (age > oldAge) {
            shown.oldSince = TimeOfDayText(today - age);
        }
    }
    return shown;
}

plclink::LinkState
Judged(const plclink::LinkState& told, std::optional<milliseconds> youngest, milliseconds oldAge)
{
    const bool isLate =
        told.status == plclink::LinkStatus::Running && youngest && *youngest > oldAge;
    return isLate ? plclink::LinkState{plclink::LinkStatus::Slow} : told;
}

const char* StatusWord(const HostTexts& texts, plclink::LinkStatus status)
{
    switch (status) {
    case plclink::LinkStatus::Connecting:
        return texts.linkConnecting;
    case plclink::LinkStatus::Running:
        return texts.linkRunning;
    case plclink::LinkStatus::Slow:
        return texts.linkSlow;
    case plclink::LinkStatus::Lost:
        return texts.linkLost;
    case plclink::LinkStatus::Refused:
        break;
    }
    return texts.linkRefused;
}

std::string CountText(const HostTexts& texts, const std::vector<ShownOperand>& operands)
{
    const auto old =
        std::count_if(operands.begin(), operands.end(), [](const ShownOperand& operand) {
            return !operand.oldSince.empty();
        });
    std::string text = std::string(texts.watchedOperands) + ": " + std::to_string(operands.size());
    if (old > 0) {
        text += ", " + std::string(texts.oldOnes) + ": " + std::to_string(old);
    }
    return text;
}

std::string LossText(const HostTexts& texts, const plclink::MessageLosses& losses)
{
    std::string text;
    if (losses.lost > 0) {
        text = std::string(texts.lostMessages) + ": " + std::to_string(losses.lost);
    }
    if (losses.dropped > 0) {
        text += (text.empty() ? "" : ", ") + std::string(texts.droppedMessages) + ": " +
                std::to_string(losses.dropped);
    }
    return text;
}

std::string NoteText(const HostTexts& texts, const ShownOperand& operand)
{
    if (!operand.refusal.empty()) {
        return operand.refusal;
    }
    return operand.oldSince.empty() ? "" : std::string(texts.oldSince) + ' ' + operand.oldSince;
}

std::string StateSentence(const plclink::LinkState& state)
{
    const std::string sentence = "the link is " + std::string(plclink::StatusText(state.status));
    return state.reason.empty() ? sentence : sentence + ": " + state.reason;
}

std::uint64_t PerSecond::Count(std::uint64_t total, plclink::Clock::time_point now)
{
    if (!m_since) {
        m_since = now;
        m_total = total;
        return m_last;
    }
    const std::chrono::duration<double> passed = now - *m_since;
    if (passed >= std::chrono::seconds(1)) {
        m_last = static_cast<std::uint64_t>(
            std::llround(static_cast<double>(total - m_total) / passed.count()));
        m_since = now;
        m_total = total;
    }
    return m_last;
}

} // namespace plchost
