#pragma once

#include "assembler.h"
#include "loader.h"
#include "modbus_map.h"
#include "options.h"
#include "recording.h"
#include "settings.h"

#include <optional>
#include <stdexcept>
#include <string>

// What the host stands on: library, machine or recording, its files. GUI thread.

namespace plchost {

/// What has to be found, read and written before the window can open.
struct Ground
{
    Plugin plugin;
    ConfigFiles files;
    std::string dataFolder;
    std::string language;
    plc::Program program;                  ///< Empty unless a soft PLC runs.
    std::optional<Recording> recording;    ///< To be played instead of a machine.
    std::optional<plclink::ModbusMap> map; ///< Of a device that is watched instead.
};

/// A step that failed ends the start with its message.
struct StartError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Finds, reads and writes all of it. Throws a StartError that names what is missing.
Ground Prepare(const Options& options);

} // namespace plchost
