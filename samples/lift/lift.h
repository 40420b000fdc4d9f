#pragma once

#include "process.h"
#include "random_numbers.h"

#include <chrono>
#include <cstdint>
#include <vector>

// The lift beside lift.il: cabin, door, and passengers who press the buttons. PLC thread.

namespace samples {

constexpr int liftFloors = 4;

/// Somebody on the way. Floors count from 0.
struct Passenger
{
    int from;
    int to;
    bool isInside = false;
    double seconds = 0; ///< Since they came.
};

class Lift : public plc::Process
{
public:
    /// @param passengerInterval seconds between two passengers, on average.
    explicit Lift(double passengerInterval) : m_interval(passengerInterval) {}

    void PowerOn(plc::Image& image) override;
    void Advance(plc::Image& image, std::chrono::milliseconds elapsed) override;

    double Position() const { return m_position; } ///< In floors: 0 is the lowest.

    double Speed() const { return m_speed; } ///< Floors a second, upwards positive.

    double Door() const { return m_door; } ///< 0 closed, 1 open.

    const std::vector<Passenger>& Passengers() const { return m_passengers; }

    std::uint32_t Carried() const { return m_carried; }

    double LongestTime() const { return m_longest; } ///< Seconds from coming to leaving.

private:
    bool IsAt(int floor) const;
    bool IsOpenAt(int floor) const;
    void MoveCabin(const plc::Image& image, double seconds);
    void MoveDoor(const plc::Image& image, double seconds);
    void MovePassengers(double seconds);
    void PressButtons(plc::Image& image) const;

    static constexpr double positionAtPowerOn = 1.5; ///< Between two floors, as it may be found.

    const double m_interval;
    RandomNumbers m_random;
    double m_position = positionAtPowerOn;
    double m_speed = 0;
    double m_door = 0;
    double m_passing = 0; ///< Seconds for which somebody still stands in the door.
    std::vector<Passenger> m_passengers;
    std::uint32_t m_carried = 0;
    double m_longest = 0;
};

} // namespace samples
