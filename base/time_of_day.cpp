#include "time_of_day.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace base {

std::string TimeOfDay(std::chrono::system_clock::time_point time)
{
    constexpr std::size_t room = 40;
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    const auto fraction = std::chrono::duration_cast<std::chrono::milliseconds>(
        time - std::chrono::system_clock::from_time_t(seconds));
    std::tm local{};
    ::localtime_r(&seconds, &local);
    std::array<char, room> day{};
    std::array<char, room> thousandths{};
    std::array<char, room> zone{};
    std::strftime(day.data(), day.size(), "%Y-%m-%dT%H:%M:%S", &local);
    std::snprintf(
        thousandths.data(), thousandths.size(), ".%03d", static_cast<int>(fraction.count()));
    std::strftime(zone.data(), zone.size(), "%z", &local);
    return std::string(day.data()) + thousandths.data() + zone.data();
}

} // namespace base
