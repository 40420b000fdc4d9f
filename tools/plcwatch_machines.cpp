#include "plcwatch_machines.h"

#include "broker_access.h"
#include "plcwatch_text.h"

namespace plcwatch {

namespace {

using std::chrono::milliseconds;

/// How long a broker may take, unless --for says otherwise.
constexpr milliseconds brokerPatience{std::chrono::seconds(10)};
constexpr milliseconds lookTime{50};

} // namespace

std::string MachineLine(const plcremote::ListedMachine& machine)
{
    return machine.name + '\t' + StateText(machine.link);
}

std::string MachineJson(const plcremote::ListedMachine& machine)
{
    std::string writable;
    for (const std::string& line : machine.writable) {
        writable += (writable.empty() ? "" : ", ") + Quoted(line);
    }
    return "{\"machine\": " + Quoted(machine.name) +
           ", \"link\": " + Quoted(std::string(plclink::StatusText(machine.link.status))) +
           ", \"reason\": " + Quoted(machine.link.reason) +
           ", \"version\": " + Quoted(machine.version) +
           ", \"listing\": " + (machine.hasListing ? "true" : "false") + ", \"writable\": [" +
           writable + "]}";
}

int ListMachines(const Options& options, const Surroundings& around)
{
    if (const auto wrong = plcremote::OpenAccessError(*options.plant, options.access);
        !wrong.empty()) {
        around.tell(wrong);
        return exitFile;
    }
    plcremote::MachineList list(*options.plant, options.access, around.tell);
    list.Start();
    const auto end = plclink::Clock::now() + options.limit.value_or(brokerPatience);
    while (list.Broker().status != plclink::LinkStatus::Running) {
        if (plclink::Clock::now() >= end) {
            around.tell("the broker does not answer (" + StateText(list.Broker()) + ')');
            return exitNoLink;
        }
        if (const auto ended = around.wait(lookTime)) {
            return *ended;
        }
    }
    std::string text;
    for (const plcremote::ListedMachine& machine : list.Machines()) {
        text += (options.json ? MachineJson(machine) : MachineLine(machine)) + '\n';
    }
    around.print(text);
    return exitGood;
}

} // namespace plcwatch
