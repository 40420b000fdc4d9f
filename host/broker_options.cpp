#include "broker_options.h"

#include <CLI/CLI.hpp>

namespace plchost {

void AddBrokerOptions(CLI::App& app, plclink::MqttAccess& access)
{
    const CLI::Validator isFile = CLI::Validator(CLI::ExistingFile).description("");
    app.add_option(
           "--ca",
           access.authorities,
           "certificates that a broker's is trusted by, else those of the system")
        ->type_name("FILE")
        ->check(isFile);
    app.add_option(
           "--password-file",
           access.passwordFile,
           "its first line is the user's password; nobody but its owner may be able to read it")
        ->type_name("FILE")
        ->check(isFile);
    app.add_flag(
        "--insecure",
        access.mayBeOpen,
        "mqtt:// also to other than loopback addresses, for everybody on the way to read and "
        "write");
}

std::string BrokerOptionsError(const plclink::MqttAccess& access)
{
    std::string option;
    if (!access.authorities.empty()) {
        option = "--ca";
    } else if (!access.passwordFile.empty()) {
        option = "--password-file";
    } else if (access.mayBeOpen) {
        option = "--insecure";
    }
    return option.empty()
               ? ""
               : option + " is of use with a broker alone, as in " + std::string(plclink::mqttForm);
}

} // namespace plchost
