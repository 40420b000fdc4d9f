#pragma once

#include "broker_options.h"
#include "cycle_time.h"
#include "fault_injector.h"
#include "modbus_address.h"
#include "mqtt_address.h"

#include <chrono>
#include <optional>
#include <string>
#include <variant>

// The host's command line. No windows.

namespace plchost {

struct Options
{
    std::string plugin;             ///< Empty: beside the program.
    std::string sample{"bottling"}; ///< The machine to try, unless there is a program.
    std::string program;            ///< Statement list to be run alone; empty: none.
    std::string language;           ///< Empty: as last time.
    std::string configFolder;       ///< Empty: in the user's configuration folder.
    std::string dataFolder;         ///< Empty: beside the program.
    std::string screenshot;         ///< Empty: none.
    std::string record;             ///< File to be recorded to; empty: none.
    std::string replay;             ///< Recording to be played instead of a machine; empty: none.
    double speed = 1;               ///< Of the replay.
    std::optional<plclink::ModbusAddress> device;   ///< To be watched instead of a machine.
    std::optional<plclink::MqttAddress> farMachine; ///< To be watched instead of a machine.
    std::optional<plclink::MqttAddress> plant;      ///< Whose machines are to be listed instead.
    std::string plantAddress;                       ///< As it was given.
    std::string openMachine;    ///< Of the plant, to be opened at the start; empty: none.
    plclink::MqttAccess access; ///< Of what is far away, or of where this is published.
    PublishOptions publish;
    std::string deviceName; ///< The address of one of both as it was given.
    std::string map;        ///< Of the device's operands.
    std::string listing;    ///< Of the device's program; empty: none.
    std::chrono::milliseconds cycle = plc::usualCycle;
    std::optional<std::chrono::milliseconds> run; ///< None: until the operator ends it.
    bool debugger = false;
    bool trace = false;
    std::optional<Fault> fault;
};

/// The program is to end with this status; what there was to say has been said.
struct ExitStatus
{
    int status;
};

/// @param argv as handed to main().
std::variant<Options, ExitStatus> ParseOptions(int argc, const char* const* argv);

} // namespace plchost
