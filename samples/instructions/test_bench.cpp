#include "instructions/test_bench.h"

namespace samples {

namespace {

using plc::Image;

const plc::Cell bits = Image::CellOf("EB0");
const plc::Cell firstWord = Image::CellOf("EW2");
const plc::Cell secondWord = Image::CellOf("EW4");
const plc::Cell firstDouble = Image::CellOf("ED8");
const plc::Cell secondDouble = Image::CellOf("ED12");

constexpr std::uint32_t bitPatterns = 32;
constexpr std::uint32_t smallNumbers = 7;

} // namespace

void TestBench::PowerOn(Image& image)
{
    Advance(image, std::chrono::milliseconds{0});
}

/// Numbers of all sizes and both signs, often small ones and zero.
std::uint32_t TestBench::NextNumber()
{
    constexpr std::uint32_t bits32 = 32;
    const std::uint32_t number = m_random.Next() >> m_random.Below(bits32);
    if (number % smallNumbers == 0) {
        return number & 1U;
    }
    return m_random.Below(2) != 0 ? number : 0U - number;
}

void TestBench::Advance(Image& image, std::chrono::milliseconds)
{
    image.Write(bits, m_cycle++ / benchBitCycles % bitPatterns);
    image.Write(firstWord, NextNumber());
    image.Write(secondWord, NextNumber());
    image.Write(firstDouble, NextNumber());
    image.Write(secondDouble, NextNumber());
}

} // namespace samples
