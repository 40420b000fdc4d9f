#include "options.h"

#include "address.h"
#include "broker_options.h"
#include "command_line.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <map>

namespace plchost {

namespace {

constexpr const char* description =
    R"(A bottling line with its PLC, and the host of the PLC debugger.

The machine starts by itself. The button "Debugger" opens and closes the debugger. Its settings,
the program debug file and variable lists lie in the folder plchost of the user's configuration
directory ($XDG_CONFIG_HOME or ~/.config).)";

constexpr const char* exitStatuses = R"(
Exit status:
  0  all went well
  1  something is missing or failed; a message says what and what to do
  2  the command line is wrong
  3  the debugger called back on another thread than the GUI thread)";

constexpr int shortestCycle = 1;
constexpr int longestCycle = 1000;
constexpr double longestRun = 1e6;
constexpr double slowestReplay = 0.01;
constexpr double fastestReplay = 1000;

/// A check that adds nothing to the help: the description says it.
CLI::Validator Silent(CLI::Validator check)
{
    return check.description("");
}

std::string FaultHelp()
{
    std::string help = "misbehave towards the debugger on purpose, in one of these ways:";
    for (const NamedFault& named : NamedFaults()) {
        help += std::string("\n  ") + named.name + ": " + named.description;
    }
    return help;
}

/// Takes an address apart that is one, with the map that was given along.
void TakeAddress(const std::string& text, Options& options)
{
    if (const auto wrong = plclink::MapError(text, options.map); !wrong.empty()) {
        throw CLI::ValidationError("--machine", wrong);
    }
    const plclink::Address address = *plclink::ParseAddress(text);
    if (const auto* const sample = std::get_if<plclink::SampleAddress>(&address)) {
        options.sample = sample->name;
    } else if (const auto* const program = std::get_if<plclink::ProgramAddress>(&address)) {
        options.program = program->file;
    } else if (const auto* const device = std::get_if<plclink::ModbusAddress>(&address)) {
        options.device = *device;
        options.deviceName = text;
    } else if (const auto* const far = std::get_if<plclink::MqttAddress>(&address)) {
        options.farMachine = *far;
        options.deviceName = text;
    } else {
        options.replay = std::get<plclink::RecordingAddress>(address).file;
    }
}

/// What is wrong with the name of a machine; empty: nothing.
std::string NameError(const std::string& name)
{
    return plclink::IsMqttName(name) ? "" : '"' + name + "\" is no machine's name";
}

/// Takes the address of a plant, and nothing that is of one machine.
void TakePlant(const CLI::App& app, Options& options)
{
    options.plant = *plclink::ParseMqttPlant(options.plantAddress);
    for (const char* name :
         {"--cycle", "--trace", "--record", "--speed", "--fault", "--screenshot"}) {
        if (app.get_option(name)->count() > 0) {
            throw CLI::ExcludesError("--machines", name);
        }
    }
}

/// What goes over a broker, together with what else is wanted.
void JudgeBroker(const Options& options)
{
    if (const auto wrong = BrokerOptionsError(options.access);
        !options.farMachine && !options.plant && !options.publish.address && !wrong.empty()) {
        throw CLI::ValidationError(wrong);
    }
    if (options.publish.address && (options.farMachine || !options.replay.empty())) {
        throw CLI::ValidationError("--publish", "tells of a machine that is here");
    }
    if (options.farMachine && !options.record.empty()) {
        throw CLI::ValidationError(
            "--record", "a machine behind a broker is recorded where it is published");
    }
}

std::map<std::string, Fault> Faults()
{
    std::map<std::string, Fault> faults;
    for (const NamedFault& named : NamedFaults()) {
        faults[named.name] = named.fault;
    }
    return faults;
}

} // namespace

std::variant<Options, ExitStatus> ParseOptions(int argc, const char* const* argv)
{
    Options options;
    int cycle = static_cast<int>(options.cycle.count());
    double run = 0;
    std::string fault;
    std::string machine;

    CLI::App app{description, "plchost"};
    app.footer(exitStatuses);
    app.add_option("--plugin", options.plugin, "the debugger library; else the one beside plchost")
        ->type_name("PATH");
    auto* const machineOption =
        app.add_option(
               "--machine",
               machine,
               "open this machine, else soft:bottling: " + plclink::AddressForms())
            ->type_name("ADDRESS")
            ->check(Silent(CLI::Validator(plclink::AddressError, "")));
    auto* const plant = AddPlantOption(
                            app,
                            options.plantAddress,
                            "list the machines of a plant behind a broker, and open any of them")
                            ->excludes(machineOption);
    app.add_option("--open", options.openMachine, "of a plant: open this machine at the start")
        ->type_name("MACHINE")
        ->check(Silent(CLI::Validator(NameError, "")))
        ->needs(plant);
    auto* const map =
        app.add_option("--map", options.map, "which operands lie where in a Modbus device")
            ->type_name("FILE")
            ->needs(machineOption);
    app.add_option(
           "--listing",
           options.listing,
           "the program debug file of a Modbus device's program, for the program page")
        ->type_name("FILE")
        ->check(Silent(CLI::ExistingFile))
        ->needs(map);
    AddPublishOptions(app, options.publish)->excludes(plant);
    AddBrokerOptions(app, options.access);
    auto* const program =
        app.add_option("--program", options.program, "short for --machine soft:FILE.il")
            ->type_name("FILE")
            ->check(Silent(CLI::ExistingFile))
            ->excludes(machineOption)
            ->excludes(plant);
    app.add_option("--language", options.language, "de or en; else as last time")
        ->type_name("NAME")
        ->check(Silent(CLI::IsMember({"de", "en"})));
    const auto* const cycleOption =
        app.add_option("--cycle", cycle, "cycle time of the PLC, 1 to 1000, else 10")
            ->type_name("MS")
            ->check(Silent(CLI::Range(shortestCycle, longestCycle)));
    const auto* const runOption =
        app.add_option("--run", run, "end by itself after so many seconds; unsaved lists are lost")
            ->type_name("SECONDS")
            ->check(Silent(CLI::Range(0.0, longestRun)));
    app.add_option(
           "--screenshot", options.screenshot, "with --run: a picture of the window at its end")
        ->type_name("FILE.png")
        ->needs("--run");
    app.add_flag("--debugger", options.debugger, "open the debugger at the start");
    app.add_option("--config-dir", options.configFolder, "keep the files here instead")
        ->type_name("DIR");
    app.add_option("--data-dir", options.dataFolder, "language files and samples")
        ->type_name("DIR")
        ->check(Silent(CLI::ExistingDirectory));
    app.add_flag("--trace", options.trace, "print every request and every answer");
    const auto* const record =
        app.add_option("--record", options.record, "write every request and every answer to a file")
            ->type_name("FILE");
    app.add_option(
           "--replay",
           options.replay,
           "short for --machine recording:FILE; a recording comes with its variables and opens the "
           "debugger")
        ->type_name("FILE")
        ->check(Silent(CLI::ExistingFile))
        ->excludes(machineOption)
        ->excludes(plant)
        ->excludes(program);
    const auto* const speed =
        app.add_option(
               "--speed", options.speed, "of a recording: so many times as fast, 0.01 to 1000")
            ->type_name("N")
            ->check(Silent(CLI::Range(slowestReplay, fastestReplay)));
    app.add_option("--fault", fault, FaultHelp())
        ->type_name("NAME")
        ->check(Silent(CLI::IsMember(Faults())));

    app.final_callback([&] {
        if (machineOption->count() > 0) {
            TakeAddress(machine, options);
        }
        if (plant->count() > 0) {
            TakePlant(app, options);
        }
        if (options.replay.empty() && speed->count() > 0) {
            throw CLI::RequiresError("--speed", "--replay");
        }
        JudgeBroker(options);
        if ((options.farMachine || options.device) && cycleOption->count() > 0) {
            throw CLI::ExcludesError("--machine " + machine, "--cycle");
        }
        for (const auto* const live : {cycleOption, record}) {
            if (!options.replay.empty() && live->count() > 0) {
                throw CLI::ExcludesError("--replay", live->get_name());
            }
        }
    });

    if (const auto ended = base::ReadCommandLine(app, argc, argv)) {
        return ExitStatus{*ended};
    }
    options.cycle = std::chrono::milliseconds(cycle);
    if (runOption->count() > 0) {
        options.run = std::chrono::milliseconds(std::llround(run * std::milli::den));
    }
    options.fault = FaultByName(fault);
    if (!options.replay.empty()) {
        options.debugger = true;
    }
    return options;
}

} // namespace plchost
