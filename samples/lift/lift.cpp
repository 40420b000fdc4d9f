#include "lift/lift.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace samples {

namespace {

using plc::Image;
using Cells = std::array<plc::Cell, liftFloors>;

const Cells buttons{
    Image::CellOf("E0.0"), Image::CellOf("E0.1"), Image::CellOf("E0.2"), Image::CellOf("E0.3")};
const Cells floorSensors{
    Image::CellOf("E1.0"), Image::CellOf("E1.1"), Image::CellOf("E1.2"), Image::CellOf("E1.3")};
const Cells callLamps{
    Image::CellOf("A1.0"), Image::CellOf("A1.1"), Image::CellOf("A1.2"), Image::CellOf("A1.3")};
const plc::Cell doorClosed = Image::CellOf("E2.0");
const plc::Cell doorOpen = Image::CellOf("E2.1");
const plc::Cell lightBarrier = Image::CellOf("E2.2");
const plc::Cell overload = Image::CellOf("E2.3");
const plc::Cell emergencyReleased = Image::CellOf("E2.4");
const plc::Cell up = Image::CellOf("A0.0");
const plc::Cell down = Image::CellOf("A0.1");
const plc::Cell openDoor = Image::CellOf("A0.2");
const plc::Cell closeDoor = Image::CellOf("A0.3");

// Floors and seconds.
constexpr double fullSpeed = 0.4;
constexpr double braking = 8;
constexpr double sensorReach = 0.02;
constexpr double doorTime = 1.5;
constexpr double passingTime = 0.8;
constexpr double barrierTime = 0.4; ///< Of the passing time.

/// Lets a value follow its goal by at most @p change.
double Follow(double value, double goal, double change)
{
    return std::clamp(goal, value - change, value + change);
}

} // namespace

void Lift::PowerOn(Image& image)
{
    image.Write(emergencyReleased, 1);
    image.Write(overload, 0);
    Advance(image, std::chrono::milliseconds{0});
}

void Lift::Advance(Image& image, std::chrono::milliseconds elapsed)
{
    const double seconds = std::chrono::duration<double>(elapsed).count();
    MoveCabin(image, seconds);
    MoveDoor(image, seconds);
    MovePassengers(seconds);
    PressButtons(image);
    for (int floor = 0; floor < liftFloors; ++floor) {
        image.Write(floorSensors.at(static_cast<std::size_t>(floor)), IsAt(floor) ? 1 : 0);
    }
    image.Write(doorClosed, m_door <= 0 ? 1 : 0);
    image.Write(doorOpen, m_door >= 1 ? 1 : 0);
    image.Write(lightBarrier, m_passing > passingTime - barrierTime ? 1 : 0);
}

bool Lift::IsAt(int floor) const
{
    return std::abs(m_position - floor) < sensorReach;
}

bool Lift::IsOpenAt(int floor) const
{
    return IsAt(floor) && m_door >= 1;
}

void Lift::MoveCabin(const Image& image, double seconds)
{
    const double wanted = (image.IsOn(up) ? fullSpeed : 0) - (image.IsOn(down) ? fullSpeed : 0);
    m_speed = Follow(m_speed, wanted, braking * seconds);
    m_position += m_speed * seconds;
}

void Lift::MoveDoor(const Image& image, double seconds)
{
    const double goal = image.IsOn(openDoor) ? 1 : (image.IsOn(closeDoor) ? 0 : m_door);
    m_door = Follow(m_door, goal, seconds / doorTime);
}

/// One passes the door at a time; who wants to get out goes first.
void Lift::MovePassengers(double seconds)
{
    if (m_random.HappensOnceIn(m_interval, seconds)) {
        const int from = static_cast<int>(m_random.Below(liftFloors));
        const int way = 1 + static_cast<int>(m_random.Below(liftFloors - 1));
        m_passengers.push_back({from, (from + way) % liftFloors});
    }
    for (Passenger& passenger : m_passengers) {
        passenger.seconds += seconds;
    }
    m_passing = std::max(m_passing - seconds, 0.0);
    if (m_passing > 0) {
        return;
    }
    const auto leaving =
        std::find_if(m_passengers.begin(), m_passengers.end(), [this](const Passenger& passenger) {
            return passenger.isInside && IsOpenAt(passenger.to);
        });
    const auto boarding =
        std::find_if(m_passengers.begin(), m_passengers.end(), [this](const Passenger& passenger) {
            return !passenger.isInside && IsOpenAt(passenger.from);
        });
    if (leaving != m_passengers.end()) {
        m_longest = std::max(m_longest, leaving->seconds);
        m_passengers.erase(leaving);
        ++m_carried;
        m_passing = passingTime;
    } else if (boarding != m_passengers.end()) {
        boarding->isInside = true;
        m_passing = passingTime;
    }
}

/// Everybody whose lamp is dark presses, unless the door is open there.
void Lift::PressButtons(Image& image) const
{
    for (int floor = 0; floor < liftFloors; ++floor) {
        const auto at = static_cast<std::size_t>(floor);
        const bool isWanted =
            std::any_of(m_passengers.begin(), m_passengers.end(), [floor](const Passenger& p) {
                return (p.isInside ? p.to : p.from) == floor;
            });
        const bool presses = isWanted && !image.IsOn(callLamps.at(at)) && !IsOpenAt(floor);
        image.Write(buttons.at(at), presses ? 1 : 0);
    }
}

} // namespace samples
