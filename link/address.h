#pragma once

#include "modbus_address.h"
#include "mqtt_address.h"
#include "result.h"

#include <string>
#include <variant>

// Where a machine is: what the programs take as --machine ADDRESS. Values. Any thread.

namespace plclink {

/// soft:NAME, a machine to try.
struct SampleAddress
{
    std::string name; ///< That samples::FindSampleMachine() knows.
};

/// soft:FILE.il, a statement list.
struct ProgramAddress
{
    std::string file;
};

/// recording:FILE, what plchost has recorded.
struct RecordingAddress
{
    std::string file;
};

using Address =
    std::variant<SampleAddress, ProgramAddress, RecordingAddress, ModbusAddress, MqttAddress>;

/// What an address may look like, for help texts.
std::string AddressForms();

/// @return the address, or what is wrong with the text and the right form. Files need not exist.
base::Result<Address> ParseAddress(const std::string& text);

/// @return what is wrong with the text; empty for an address.
std::string AddressError(const std::string& text);

/// A Modbus device needs a map of its operands, and nothing else has one.
/// @param map the file that was given; empty: none.
/// @return what is wrong with the two together; empty when nothing is.
std::string MapError(const std::string& address, const std::string& map);

} // namespace plclink
