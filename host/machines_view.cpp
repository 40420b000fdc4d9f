#include "machines_view.h"

#include "link_view.h"

namespace plchost {

namespace {

/// Of lines "USER WHAT" those of this user, in one.
std::string WritableBy(const std::vector<std::string>& lines, const std::string& user)
{
    std::string writable;
    for (const std::string& line : lines) {
        if (line.rfind(user + ' ', 0) == 0) {
            writable += (writable.empty() ? "" : ", ") + line.substr(user.size() + 1);
        }
    }
    return writable;
}

} // namespace

ShownMachine
Shown(const HostTexts& texts, const plcremote::ListedMachine& machine, const std::string& user)
{
    return {
        machine.name,
        machine.link.status,
        machine.link.reason,
        machine.hasListing ? texts.yes : texts.no,
        WritableBy(machine.writable, user),
        machine.version};
}

std::string
PlantSentence(const HostTexts& texts, const plclink::LinkState& broker, std::size_t count)
{
    if (broker.status != plclink::LinkStatus::Running) {
        const std::string state =
            texts.broker + std::string(": ") + StatusWord(texts, broker.status);
        return broker.reason.empty() ? state : state + " (" + broker.reason + ')';
    }
    return count == 0 ? texts.noMachines : "";
}

std::vector<std::string> OpeningCommand(
    const std::string& program,
    const Options& options,
    const std::string& machine,
    const std::string& language)
{
    std::vector<std::string> command{
        program,
        "--machine",
        options.plantAddress + '/' + machine,
        "--debugger",
        "--language",
        language};
    const auto add = [&command](const char* option, const std::string& value) {
        if (!value.empty()) {
            command.insert(command.end(), {option, value});
        }
    };
    add("--ca", options.access.authorities);
    add("--password-file", options.access.passwordFile);
    add("--plugin", options.plugin);
    add("--data-dir", options.dataFolder);
    // Each machine has its own settings and lists.
    add("--config-dir", options.configFolder.empty() ? "" : options.configFolder + '/' + machine);
    if (options.access.mayBeOpen) {
        command.emplace_back("--insecure");
    }
    return command;
}

} // namespace plchost
