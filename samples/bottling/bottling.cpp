#include "bottling/bottling.h"

#include <algorithm>
#include <cmath>

namespace samples {

namespace {

using plc::Image;

const plc::Cell motor = Image::CellOf("A0.0");
const plc::Cell fillValve = Image::CellOf("A0.1");
const plc::Cell tankSupply = Image::CellOf("A0.2");
const plc::Cell emergencyReleased = Image::CellOf("E0.2");
const plc::Cell infeedOpen = Image::CellOf("E0.5");
const plc::Cell motorHealthy = Image::CellOf("E0.6");
const plc::Cell bottleAtValve = Image::CellOf("E1.0");
const plc::Cell bottleAtOutlet = Image::CellOf("E1.1");
const plc::Cell tankAboveLow = Image::CellOf("E1.2");
const plc::Cell tankFull = Image::CellOf("E1.3");
const plc::Cell beltMoves = Image::CellOf("E1.4");
const plc::Cell tankLevel = Image::CellOf("EW4");
const plc::Cell bottleLevel = Image::CellOf("EW6");

// Belt lengths and seconds.
constexpr double fullSpeed = 0.08;
constexpr double acceleration = 0.4;
constexpr double movingSpeed = 0.01;
constexpr double bottleSpacing = 0.2;
constexpr double sensorReach = 0.012; ///< To each side: the belt coasts to a stand inside it.

// Bottles, tanks and seconds.
constexpr double fillPerSecond = 0.5;
constexpr double bottlesPerTank = 33;
constexpr double supplyPerSecond = 0.05;
constexpr double initialTank = 0.6;
constexpr double lowMark = 0.25;
constexpr double fullMark = 0.9;

constexpr double analogFull = 1000;

std::uint32_t Analog(double level)
{
    return static_cast<std::uint32_t>(std::lround(level * analogFull));
}

bool IsNear(const Bottle& bottle, double position)
{
    return std::abs(bottle.position - position) < sensorReach;
}

} // namespace

void BottlingLine::PowerOn(Image& image)
{
    for (const PanelSwitch& element : bottlingSwitches) {
        image.Write(Image::CellOf(element.operand), element.initially ? 1 : 0);
    }
    m_line.tankLevel = initialTank;
    Advance(image, std::chrono::milliseconds{0});
}

void BottlingLine::Advance(Image& image, std::chrono::milliseconds elapsed)
{
    const double seconds = std::chrono::duration<double>(elapsed).count();
    const bool powered = image.IsOn(emergencyReleased);
    m_line.motorOn = powered && image.IsOn(motorHealthy) && image.IsOn(motor);
    m_line.valveOpen = powered && image.IsOn(fillValve);
    m_line.supplyOpen = powered && image.IsOn(tankSupply);
    MoveBelt(seconds, image.IsOn(infeedOpen));
    Fill(seconds);

    const auto& bottles = m_line.bottles;
    const auto atValve = std::find_if(bottles.begin(), bottles.end(), [](const Bottle& bottle) {
        return IsNear(bottle, fillPosition);
    });
    m_line.bottleAtValve = atValve != bottles.end();
    m_line.bottleAtOutlet = std::any_of(bottles.begin(), bottles.end(), [](const Bottle& bottle) {
        return IsNear(bottle, outletPosition);
    });
    image.Write(bottleAtValve, m_line.bottleAtValve ? 1 : 0);
    image.Write(bottleAtOutlet, m_line.bottleAtOutlet ? 1 : 0);
    image.Write(tankAboveLow, m_line.tankLevel > lowMark ? 1 : 0);
    image.Write(tankFull, m_line.tankLevel > fullMark ? 1 : 0);
    image.Write(beltMoves, m_speed > movingSpeed ? 1 : 0);
    image.Write(tankLevel, Analog(m_line.tankLevel));
    image.Write(bottleLevel, m_line.bottleAtValve ? Analog(atValve->level) : 0);

    const std::lock_guard lock(m_mutex); // View() takes a copy meanwhile, nothing else.
    m_view = m_line;
}

void BottlingLine::MoveBelt(double seconds, bool infeed)
{
    const double wanted = m_line.motorOn ? fullSpeed : 0;
    const double change = acceleration * seconds;
    m_speed = std::clamp(wanted, m_speed - change, m_speed + change);
    const double distance = m_speed * seconds;
    m_line.beltTravel += distance;

    auto& bottles = m_line.bottles;
    for (Bottle& bottle : bottles) {
        bottle.position += distance;
    }
    if (!bottles.empty() && bottles.back().position > 1) {
        bottles.pop_back();
        ++m_line.delivered;
    }
    const bool hasRoom = bottles.empty() || bottles.front().position >= bottleSpacing;
    if (infeed && hasRoom && distance > 0) {
        bottles.insert(bottles.begin(), Bottle{0, 0});
    }
}

void BottlingLine::Fill(double seconds)
{
    double& tank = m_line.tankLevel;
    if (m_line.supplyOpen) {
        tank = std::min(tank + supplyPerSecond * seconds, 1.0);
    }
    if (!m_line.valveOpen) {
        return;
    }
    const double amount = std::min(fillPerSecond * seconds, tank * bottlesPerTank);
    tank -= amount / bottlesPerTank;
    for (Bottle& bottle : m_line.bottles) {
        if (IsNear(bottle, fillPosition)) {
            bottle.level += amount;
        }
    }
}

BottlingView BottlingLine::View() const
{
    const std::lock_guard lock(m_mutex);
    return m_view;
}

} // namespace samples
