#pragma once

#include "address.h"
#include "broker_options.h"
#include "plcwatch_variable.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

// The command line of plcwatch. The thread of main().

namespace plcwatch {

enum ExitStatus : int
{
    exitGood = 0,
    exitFile = 1,
    exitUsage = 2,
    exitUnknownOperand = 3,
    exitNoLink = 4,
    exitNotWritten = 5
};

struct WriteOrder
{
    Variable variable;
    std::uint32_t value;
};

/// Exactly one of list, read, write and plant is there.
struct Options
{
    std::string machine; ///< As it was given; empty with a plant.
    plclink::Address address;
    std::optional<plclink::MqttAddress> plant; ///< Whose machines are listed.
    plclink::MqttAccess access;                ///< Of whatever lies behind a broker.
    std::string map;                           ///< Of a device's operands; empty without a device.
    std::string list;                          ///< Empty: none.
    plchost::PublishOptions publish;
    std::string listing; ///< Program debug file that is told along; empty: none.
    std::optional<Variable> read;
    std::optional<WriteOrder> write;
    std::chrono::milliseconds every{100};
    std::optional<std::chrono::milliseconds> limit; ///< None: until it is interrupted.
    bool once = false;
    bool plain = false;
    bool json = false;
    bool clock = false;
};

/// "100ms", "10s", "5min"; a number alone counts seconds.
std::optional<std::chrono::milliseconds> ParseDuration(const std::string& text);

/// @return the options, or the status to end with; what there was to say has been said.
std::variant<Options, ExitStatus> ParseOptions(int argc, const char* const* argv);

} // namespace plcwatch
