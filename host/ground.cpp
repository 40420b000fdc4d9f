#include "ground.h"

#include "debug_file.h"
#include "file.h"
#include "listing.h"
#include "open_machine.h"
#include "tell.h"
#include "texts.h"

#include <glibmm/miscutils.h>

#include <filesystem>
#include <utility>

namespace plchost {

namespace {

namespace fs = std::filesystem;

void Demand(const base::Result<void>& result)
{
    if (!result) {
        throw StartError{result.Message()};
    }
}

template <typename T> T Demand(base::Result<T> result)
{
    if (!result) {
        throw StartError{result.Message()};
    }
    return *std::move(result);
}

std::string StemOf(const std::string& file)
{
    return fs::path(file).stem();
}

/// @param name of the machine.
ConfigFiles PrepareFiles(const Options& options, const std::string& name)
{
    std::string folder = options.configFolder;
    if (folder.empty()) {
        folder = Glib::build_filename(Glib::get_user_config_dir(), "plchost");
    }
    // A recording brings its own variables and settings of its own, so it gets a folder of its own.
    if (options.configFolder.empty() && !options.replay.empty()) {
        folder = Glib::build_filename(folder, "replay");
    }
    // The list that was on show last is of no use for another device.
    if (options.configFolder.empty() && (options.device || options.farMachine)) {
        folder = Glib::build_filename(folder, "device", name);
    }
    ConfigFiles files = FilesIn(folder, name);
    if (files.prefix.size() >= PLC_PATH_SIZE) {
        throw StartError{
            "the path \"" + files.prefix + "\" is longer than the debugger takes, " +
            std::to_string(PLC_PATH_SIZE - 1) +
            " bytes (name a shorter one with --config-dir DIR)"};
    }
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw StartError{
            "cannot make the folder \"" + folder + "\": " + error.message() +
            " (name another one with --config-dir DIR)"};
    }
    return files;
}

std::string LanguageOf(const Options& options, const ConfigFiles& files)
{
    if (!options.language.empty()) {
        return options.language;
    }
    const std::string last = ReadLanguage(files.settings);
    return last == "de" || last == "en" ? last : EnvironmentLanguage();
}

/// The list that lies beside a file of the machine is the first one.
void Seed(const ConfigFiles& files, const std::string& neighbour)
{
    const fs::path list = fs::path(neighbour).replace_extension(".plc");
    if (fs::exists(list)) {
        Demand(SeedWatchList(files, list));
    }
}

void PrepareMachine(const Options& options, Ground& ground)
{
    const std::string sample = SampleProgramFile(ground.dataFolder, options.sample);
    const std::string source = options.program.empty() ? sample : options.program;
    ground.program = Demand(ReadProgram(source));
    ground.files = PrepareFiles(options, StemOf(source));
    Demand(plc::WriteDebugFile(ground.program, ground.files.prefix));
    if (options.program.empty()) {
        Seed(ground.files, sample);
    }
}

/// The listing of a device's program, as the debugger reads it.
std::string ListingOf(const Options& options, const std::string& language)
{
    if (options.listing.empty()) {
        return Demand(ListingThatSays(TextsIn(language).noListing));
    }
    if (!CheckDebugFile(options.listing)) {
        throw StartError{
            '"' + options.listing +
            "\" is no program debug file (plcasm writes one of a statement list)"};
    }
    return Demand(base::ReadFile(options.listing));
}

void PrepareDevice(const Options& options, Ground& ground)
{
    ground.map = Demand(plclink::ReadModbusMapFile(options.map));
    ground.files = PrepareFiles(options, StemOf(options.map));
    Demand(ReplaceConfigFile(
        ground.files.debugFile, ListingOf(options, LanguageOf(options, ground.files))));
    Seed(ground.files, options.map);
}

void PrepareFarMachine(const Options& options, Ground& ground)
{
    const plclink::MqttAddress& machine = *options.farMachine;
    ground.files = PrepareFiles(options, machine.plant + '-' + machine.machine);
}

void PrepareReplay(const Options& options, Ground& ground)
{
    ground.recording = Demand(ReadRecording(options.replay));
    if (!ground.recording->remark.empty()) {
        Tell(ground.recording->remark);
    }
    ground.files = PrepareFiles(options, StemOf(options.replay));
    Demand(ReplaceConfigFile(ground.files.debugFile, ground.recording->listing));
    Demand(UseWatchList(ground.files, WatchListOf(WatchedOperands(*ground.recording))));
}

} // namespace

Ground Prepare(const Options& options)
{
    const std::string programFolder = fs::read_symlink("/proc/self/exe").parent_path();
    Ground ground;
    ground.plugin = Demand(
        LoadPlugin(options.plugin.empty() ? Demand(FindPlugin(programFolder)) : options.plugin));
    ground.dataFolder = options.dataFolder.empty() ? Demand(FindDataFolder(programFolder))
                                                   : fs::absolute(options.dataFolder).string();
    if (options.device) {
        PrepareDevice(options, ground);
    } else if (options.farMachine) {
        PrepareFarMachine(options, ground);
    } else if (options.replay.empty()) {
        PrepareMachine(options, ground);
    } else {
        PrepareReplay(options, ground);
    }
    ground.language = LanguageOf(options, ground.files);
    return ground;
}

} // namespace plchost
