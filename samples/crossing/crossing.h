#pragma once

#include "process.h"
#include "random_numbers.h"

#include <chrono>
#include <cstdint>

// The traffic at the crossing beside crossing.il: cars on two roads, pedestrians. PLC thread.

namespace samples {

/// Those who come to one of the three lights.
struct Traffic
{
    std::uint32_t waiting = 0;
    std::uint32_t passed = 0;
    double waitingTime = 0;     ///< Seconds since somebody waits; 0 while nobody does.
    double longestWait = 0;     ///< Seconds.
    double sinceLastPassed = 0; ///< Seconds.
};

class Crossing : public plc::Process
{
public:
    void PowerOn(plc::Image& image) override;
    void Advance(plc::Image& image, std::chrono::milliseconds elapsed) override;

    const Traffic& MainRoad() const { return m_main; }

    const Traffic& SideRoad() const { return m_side; }

    const Traffic& Pedestrians() const { return m_walk; }

private:
    RandomNumbers m_random;
    Traffic m_main;
    Traffic m_side;
    Traffic m_walk;
    double m_buttonTime = 0; ///< Seconds for which the button is still pressed.
};

} // namespace samples
