#include "command_line.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace base {

std::optional<int> ReadCommandLine(CLI::App& app, int argc, const char* const* argv)
{
    app.failure_message([](const CLI::App* program, const CLI::Error& error) {
        const std::string& name = program->get_name();
        return name + ": " + error.what() + " (" + name + " --help tells more)\n";
    });
    app.set_version_flag(
        "--version", app.get_name() + " " PLCDEBUG_VERSION, "print the version and exit");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : exitUsage;
    }
    return std::nullopt;
}

void Tell(const std::string& program, const std::string& sentence)
{
    std::cerr << program + ": " + sentence + '\n' << std::flush;
}

} // namespace base
