#pragma once

#include "process.h"
#include "random_numbers.h"

#include <chrono>
#include <cstdint>

// The test bench beside instructions.il: other inputs in every cycle. PLC thread.

namespace samples {

/// Numbers change in every cycle, bits after as many: timers run out and are cut off.
constexpr std::uint32_t benchBitCycles = 3;

class TestBench : public plc::Process
{
public:
    void PowerOn(plc::Image& image) override;
    void Advance(plc::Image& image, std::chrono::milliseconds elapsed) override;

private:
    std::uint32_t NextNumber();

    std::uint32_t m_cycle = 0;
    RandomNumbers m_random;
};

} // namespace samples
