#pragma once

#include "process.h"

#include <chrono>

// The batch mixer beside mixer.il: a heated vessel on a scale. PLC thread.

namespace samples {

class Mixer : public plc::Process
{
public:
    void PowerOn(plc::Image& image) override;
    void Advance(plc::Image& image, std::chrono::milliseconds elapsed) override;

    double MaterialA() const { return m_materialA; } ///< Kilograms in the vessel.

    double MaterialB() const { return m_materialB; } ///< Kilograms in the vessel.

    double Temperature() const { return m_temperature; }

    double Mixed() const { return m_mixed; } ///< 0 in layers, 1 wholly mixed.

    bool IsDraining() const { return m_drain > 0; }

private:
    void Pour(double seconds, double flowA, double flowB);
    void Drain(double seconds);

    double Weight() const { return m_materialA + m_materialB; }

    double m_materialA = 0;
    double m_materialB = 0;
    double m_temperature = 0;
    double m_mixed = 0;
    // Valves need time: 0 shut, 1 open.
    double m_valveA = 0;
    double m_valveB = 0;
    double m_drain = 0;
};

} // namespace samples
