#include "cyclic_program.h"

#include <string_view>

namespace plc {

namespace {

std::string_view CauseText(StopCause cause)
{
    switch (cause) {
    case StopCause::CycleTooLong:
        return "cycle too long";
    case StopCause::JumpOutOfBounds:
        return "jump out of bounds";
    case StopCause::DivisionByZero:
        return "division by zero";
    case StopCause::CallsTooDeep:
        return "too many calls inside each other";
    }
    return {};
}

} // namespace

std::string StopText(const StopReason& reason)
{
    return std::string(CauseText(reason.cause)) + " in " + reason.place;
}

} // namespace plc
