#include "process.h"

#include <algorithm>

namespace plc {

namespace {

/// A process is as true to nature in a long cycle as in short ones.
constexpr std::chrono::milliseconds longestStep{20};

} // namespace

void MoveOn(Process& process, Image& image, std::chrono::milliseconds elapsed)
{
    do {
        const auto step = std::min(elapsed, longestStep);
        process.Advance(image, step);
        elapsed -= step;
    } while (elapsed.count() > 0);
}

} // namespace plc
