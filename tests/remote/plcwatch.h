#pragma once

#include "broker.h"

#include <sstream>
#include <string>
#include <vector>

/// The words that run plcwatch with a user's access to a broker.
inline std::vector<std::string> PlcwatchCommand(
    const Broker& broker, const std::string& user, const std::vector<std::string>& words)
{
    std::istringstream run(PLCWATCH);
    std::vector<std::string> command;
    for (std::string word; run >> word;) {
        command.push_back(word);
    }
    command.insert(command.end(), words.begin(), words.end());
    command.insert(
        command.end(),
        {"--ca", broker.File("ca.crt"), "--password-file", broker.File(user + ".password")});
    return command;
}
