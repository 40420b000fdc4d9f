#include "open_machine.h"

#include "assembler.h"
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

OpenedMachine OpenMachine(
    const plclink::Address& address, const std::string& mapFile, const std::string& dataFolder)
{
    if (const auto* const device = std::get_if<plclink::ModbusAddress>(&address)) {
        auto map = plclink::ReadModbusMapFile(mapFile);
        return map ? OpenedMachine(OpenDevice(*device, *std::move(map)))
                   : base::Failure{map.Message()};
    }
    if (const auto* const sample = std::get_if<plclink::SampleAddress>(&address)) {
        return OpenProgram(
            SampleProgramFile(dataFolder, sample->name), samples::FindSampleMachine(sample->name));
    }
    if (const auto* const program = std::get_if<plclink::ProgramAddress>(&address)) {
        return OpenProgram(program->file, nullptr);
    }
    return OpenRecording(std::get<plclink::RecordingAddress>(address).file);
}

std::string SampleProgramFile(const std::string& dataFolder, const std::string& name)
{
    return dataFolder + "/samples/" + name + '/' + name + ".il";
}

} // namespace plchost
