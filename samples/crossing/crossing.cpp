#include "crossing/crossing.h"

#include <algorithm>

namespace samples {

namespace {

using plc::Image;

const plc::Cell button = Image::CellOf("E0.0");
const plc::Cell sideCar = Image::CellOf("E0.1");
const plc::Cell mainGreen = Image::CellOf("A0.2");
const plc::Cell sideGreen = Image::CellOf("A1.2");
const plc::Cell walkGreen = Image::CellOf("A2.1");

// Seconds.
constexpr double mainInterval = 4;
constexpr double sideInterval = 15;
constexpr double walkInterval = 30;
constexpr double carGap = 2;
constexpr double pressTime = 0.3;

/// Lets one come by chance and, while it is green, one pass after the other.
/// @return whether one came.
bool Advance(Traffic& traffic, bool comes, bool isGreen, double gap, double seconds)
{
    if (comes) {
        ++traffic.waiting;
    }
    traffic.sinceLastPassed += seconds;
    if (isGreen && traffic.waiting > 0 && traffic.sinceLastPassed >= gap) {
        --traffic.waiting;
        ++traffic.passed;
        traffic.sinceLastPassed = 0;
        traffic.waitingTime = 0;
    }
    traffic.waitingTime = traffic.waiting > 0 ? traffic.waitingTime + seconds : 0;
    traffic.longestWait = std::max(traffic.longestWait, traffic.waitingTime);
    return comes;
}

} // namespace

void Crossing::PowerOn(Image& image)
{
    image.Write(button, 0);
    image.Write(sideCar, 0);
}

void Crossing::Advance(Image& image, std::chrono::milliseconds elapsed)
{
    const double seconds = std::chrono::duration<double>(elapsed).count();
    const auto comes = [&](double average) { return m_random.HappensOnceIn(average, seconds); };
    samples::Advance(m_main, comes(mainInterval), image.IsOn(mainGreen), carGap, seconds);
    samples::Advance(m_side, comes(sideInterval), image.IsOn(sideGreen), carGap, seconds);
    if (samples::Advance(m_walk, comes(walkInterval), image.IsOn(walkGreen), 0, seconds)) {
        m_buttonTime = pressTime;
    }
    m_buttonTime = std::max(m_buttonTime - seconds, 0.0);
    image.Write(button, m_buttonTime > 0 ? 1 : 0);
    image.Write(sideCar, m_side.waiting > 0 ? 1 : 0);
}

} // namespace samples
