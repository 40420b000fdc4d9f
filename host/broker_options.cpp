#include "broker_options.h"

#include <CLI/CLI.hpp>

#include <utility>

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

CLI::Option* AddPlantOption(CLI::App& app, std::string& plant, const std::string& description)
{
    return app.add_option("--machines", plant, description)
        ->type_name(std::string(plclink::mqttPlantForm))
        ->check(CLI::Validator(
            [](const std::string& text) {
                const auto address = plclink::ParseMqttPlant(text);
                return address ? "" : address.Message();
            },
            ""));
}

CLI::Option* AddPublishOptions(CLI::App& app, PublishOptions& options)
{
    auto* const publish = app.add_option_function<std::string>(
                                 "--publish",
                                 [&options](const std::string& text) {
                                     options.address = *plclink::ParseMqttAddress(text);
                                 },
                                 "tell the machine to others, over a broker")
                              ->type_name(std::string(plclink::mqttForm))
                              ->check(CLI::Validator(
                                  [](const std::string& text) {
                                      const auto address = plclink::ParseMqttAddress(text);
                                      return address ? "" : address.Message();
                                  },
                                  ""));
    app.add_option(
           "--allow-write", options.allowWrite, "who may write what from there, else nobody")
        ->type_name("FILE")
        ->needs(publish);
    return publish;
}

base::Result<plcremote::PublishOrder> MakePublishOrder(
    const PublishOptions& options,
    const plclink::MqttAccess& access,
    std::string listing,
    const std::string& program)
{
    plcremote::PublishOrder order{
        *options.address, access, {}, std::move(listing), {}, program + " " PLCDEBUG_VERSION};
    if (!options.allowWrite.empty()) {
        auto list = plcremote::ReadWriteListFile(options.allowWrite);
        if (!list) {
            return base::Failure{list.Message()};
        }
        order.writeList = *std::move(list);
    }
    return order;
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
