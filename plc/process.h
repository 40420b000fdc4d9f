#pragma once

#include "image.h"

#include <chrono>

// What a controller controls: a simulated process beside the program. PLC thread.

namespace plc {

class Process
{
public:
    Process() = default;
    Process(const Process&) = delete;
    Process(Process&&) = delete;
    Process& operator=(const Process&) = delete;
    Process& operator=(Process&&) = delete;
    virtual ~Process() = default;

    /// Puts switches and sensors into their initial position. Called once, before the first cycle.
    virtual void PowerOn(Image& image) = 0;

    /// Moves on by @p elapsed: takes the outputs, sets the inputs that are sensors. Called before
    /// the program in each cycle, also in STOP, where all outputs are off; several times before one
    /// that comes late. Leaves the switches to the operator.
    virtual void Advance(Image& image, std::chrono::milliseconds elapsed) = 0;
};

/// Lets a process move on by @p elapsed, in steps that are short enough for it.
void MoveOn(Process& process, Image& image, std::chrono::milliseconds elapsed);

} // namespace plc
