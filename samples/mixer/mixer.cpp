#include "mixer/mixer.h"

#include <algorithm>
#include <cmath>

namespace samples {

namespace {

using plc::Image;

const plc::Cell goOn = Image::CellOf("E0.1");
const plc::Cell emergencyReleased = Image::CellOf("E0.2");
const plc::Cell stirrerHealthy = Image::CellOf("E0.4");
const plc::Cell handValveA = Image::CellOf("E0.6");
const plc::Cell vesselEmpty = Image::CellOf("E1.0");
const plc::Cell vesselTooFull = Image::CellOf("E1.1");
const plc::Cell scale = Image::CellOf("EW2");
const plc::Cell thermometer = Image::CellOf("EW4");
const plc::Cell valveA = Image::CellOf("A0.0");
const plc::Cell valveB = Image::CellOf("A0.1");
const plc::Cell stirrer = Image::CellOf("A0.2");
const plc::Cell heater = Image::CellOf("A0.3");
const plc::Cell drainValve = Image::CellOf("A0.4");

// Kilograms, degrees, seconds.
constexpr double flowOfA = 2;
constexpr double flowOfB = 1;
constexpr double flowOfDrain = 4;
constexpr double valveTime = 0.8;
constexpr double emptyWeight = 0.05;
constexpr double fullWeight = 60;
constexpr double ambient = 20;
constexpr double heating = 30; ///< Degrees a second for one kilogram.
constexpr double cooling = 0.002;
constexpr double mixingTime = 3;
constexpr double tenths = 10;

double Follow(double value, bool isOpen, double seconds)
{
    const double change = seconds / valveTime;
    return std::clamp(isOpen ? 1.0 : 0.0, value - change, value + change);
}

std::uint32_t Tenths(double value)
{
    return static_cast<std::uint32_t>(std::lround(value * tenths));
}

} // namespace

void Mixer::PowerOn(Image& image)
{
    for (const plc::Cell& cell : {goOn, emergencyReleased, stirrerHealthy, handValveA}) {
        image.Write(cell, 1);
    }
    m_temperature = ambient;
    Advance(image, std::chrono::milliseconds{0});
}

void Mixer::Advance(Image& image, std::chrono::milliseconds elapsed)
{
    const double seconds = std::chrono::duration<double>(elapsed).count();
    m_valveA = Follow(m_valveA, image.IsOn(valveA), seconds);
    m_valveB = Follow(m_valveB, image.IsOn(valveB), seconds);
    m_drain = Follow(m_drain, image.IsOn(drainValve), seconds);
    Pour(seconds, image.IsOn(handValveA) ? m_valveA * flowOfA : 0, m_valveB * flowOfB);
    if (image.IsOn(stirrer)) {
        m_mixed += (1 - m_mixed) * seconds / mixingTime;
    }
    if (image.IsOn(heater) && Weight() > emptyWeight) {
        m_temperature += heating / std::max(Weight(), 1.0) * seconds;
    }
    m_temperature -= (m_temperature - ambient) * cooling * seconds;
    Drain(seconds);

    image.Write(vesselEmpty, Weight() < emptyWeight ? 1 : 0);
    image.Write(vesselTooFull, Weight() > fullWeight ? 1 : 0);
    image.Write(scale, Tenths(Weight()));
    image.Write(thermometer, Tenths(m_temperature));
}

/// What comes in is cold and not mixed.
void Mixer::Pour(double seconds, double flowA, double flowB)
{
    const double amount = (flowA + flowB) * seconds;
    if (amount <= 0) {
        return;
    }
    const double kept = Weight() / (Weight() + amount);
    m_materialA += flowA * seconds;
    m_materialB += flowB * seconds;
    m_mixed *= kept;
    m_temperature = ambient + (m_temperature - ambient) * kept;
}

void Mixer::Drain(double seconds)
{
    const double weight = Weight();
    if (weight <= 0) {
        return;
    }
    const double kept = std::max(weight - m_drain * flowOfDrain * seconds, 0.0) / weight;
    m_materialA *= kept;
    m_materialB *= kept;
}

} // namespace samples
