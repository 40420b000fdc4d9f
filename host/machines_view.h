#pragma once

#include "machine_list.h"
#include "options.h"
#include "texts.h"

#include <string>
#include <vector>

// What the window of a plant says of its machines, and how one of them is opened. Values and
// texts. Any thread.

namespace plchost {

/// A machine of the plant, as it is shown.
struct ShownMachine
{
    std::string name{};
    plclink::LinkStatus status{};
    std::string reason{};
    std::string programPage{}; ///< Whether it has one.
    std::string writable{};    ///< What this user may write.
    std::string version{};
};

/// @param user who watches.
ShownMachine
Shown(const HostTexts& texts, const plcremote::ListedMachine& machine, const std::string& user);

/// What is to be said above the machines; empty when they speak for themselves.
/// @param count how many there are.
std::string
PlantSentence(const HostTexts& texts, const plclink::LinkState& broker, std::size_t count);

/// The command that opens a machine in a program of its own, with its debugger.
/// @param program its path.
/// @param options of the plant's window.
/// @param language in which it speaks.
std::vector<std::string> OpeningCommand(
    const std::string& program,
    const Options& options,
    const std::string& machine,
    const std::string& language);

} // namespace plchost
