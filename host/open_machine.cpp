#include "open_machine.h"

#include "assembler.h"
#include "broker_access.h"
#include "cycle_time.h"
#include "modbus_connection.h"
#include "modbus_source.h"
#include "playback.h"
#include "sample_machines.h"
#include "soft_plc.h"

#include <utility>

namespace plchost {

namespace {

using OpenedMachine = base::Result<std::unique_ptr<plclink::Source>>;

OpenedMachine OpenProgram(const std::string& file, const samples::SampleMachine* sample)
{
    auto program = ReadProgram(file);
    if (!program) {
        return base::Failure{program.Message()};
    }
    return {std::make_unique<plclink::SoftPlc>(*std::move(program), sample, plc::usualCycle)};
}

OpenedMachine OpenRecording(const std::string& file)
{
    auto recording = ReadRecording(file);
    if (!recording) {
        return base::Failure{recording.Message()};
    }
    return {std::make_unique<Playback>(*std::move(recording))};
}

} // namespace

base::Result<plc::Program> ReadProgram(const std::string& file)
{
    plc::Assembly assembly = plc::AssembleFile(file);
    if (assembly.program) {
        return std::move(*assembly.program);
    }
    std::string message = "the program has errors:";
    for (const plc::SourceError& error : assembly.errors) {
        message += '\n' + plc::ErrorText(error);
    }
    return base::Failure{message};
}

std::unique_ptr<plclink::Source>
OpenDevice(const plclink::ModbusAddress& address, plclink::ModbusMap map)
{
    auto connection = plclink::MakeModbusConnection(address, map);
    return std::make_unique<plclink::ModbusSource>(std::move(map), std::move(connection));
}

base::Result<std::unique_ptr<plcremote::MqttSource>> OpenFarMachine(
    const plclink::MqttAddress& address,
    const plclink::MqttAccess& access,
    std::function<void(const std::string& sentence)> log)
{
    if (const std::string wrong = plcremote::OpenAccessError(address, access); !wrong.empty()) {
        return base::Failure{wrong};
    }
    return {std::make_unique<plcremote::MqttSource>(address, access, std::move(log))};
}

OpenedMachine OpenMachine(const MachineOrder& order)
{
    if (const auto* const device = std::get_if<plclink::ModbusAddress>(&order.address)) {
        auto map = plclink::ReadModbusMapFile(order.map);
        return map ? OpenedMachine(OpenDevice(*device, *std::move(map)))
                   : base::Failure{map.Message()};
    }
    if (const auto* const far = std::get_if<plclink::MqttAddress>(&order.address)) {
        auto machine = OpenFarMachine(*far, order.access, order.log);
        return machine ? OpenedMachine(*std::move(machine)) : base::Failure{machine.Message()};
    }
    if (const auto* const sample = std::get_if<plclink::SampleAddress>(&order.address)) {
        return OpenProgram(
            SampleProgramFile(order.dataFolder, sample->name),
            samples::FindSampleMachine(sample->name));
    }
    if (const auto* const program = std::get_if<plclink::ProgramAddress>(&order.address)) {
        return OpenProgram(program->file, nullptr);
    }
    return OpenRecording(std::get<plclink::RecordingAddress>(order.address).file);
}

std::string SampleProgramFile(const std::string& dataFolder, const std::string& name)
{
    return dataFolder + "/samples/" + name + '/' + name + ".il";
}

} // namespace plchost
