#include "exit_status.h"
#include "host.h"
#include "machines_program.h"
#include "tell.h"

#include <gtkmm/main.h>

#include <exception>
#include <filesystem>

namespace plchost {

namespace {

int Main(int argc, char** argv)
{
    const auto parsed = ParseOptions(argc, argv);
    if (const auto* exit = std::get_if<ExitStatus>(&parsed)) {
        return exit->status;
    }
    const auto& options = std::get<Options>(parsed);
    if (gtk_init_check(nullptr, nullptr) == FALSE) {
        throw StartError{"no display (set DISPLAY, or run it under a virtual X server)"};
    }
    const Gtk::Main toolkit;
    if (options.plant) {
        return MachinesProgram(options, std::filesystem::read_symlink("/proc/self/exe")).Run();
    }
    return Host(options, Prepare(options)).Run();
}

} // namespace

} // namespace plchost

int main(int argc, char** argv)
{
    try {
        return plchost::Main(argc, argv);
    } catch (const std::exception& error) {
        plchost::Tell(error.what());
        return plchost::exitFailed;
    }
}
