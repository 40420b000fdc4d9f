#include "mbpoll.h"

#include "child.h"

#include <algorithm>
#include <sstream>

namespace {

std::string Mbpoll(
    const std::string& port, const char* table, int address, const std::vector<std::string>& more)
{
    std::vector<std::string> command{
        "mbpoll",
        "-0",
        "-1",
        "-q",
        "-m",
        "tcp",
        "-p",
        port,
        "-a",
        "1",
        "-t",
        table,
        "-r",
        std::to_string(address)};
    command.insert(command.end(), more.begin(), more.end());
    return Child(command).WaitForEnd();
}

} // namespace

std::string MbpollWrite(const std::string& port, const char* table, int address, int value)
{
    return Mbpoll(port, table, address, {"127.0.0.1", std::to_string(value)});
}

std::vector<std::uint16_t>
MbpollRead(const std::string& port, const char* table, int address, int count)
{
    constexpr int mostInOneRun = 125;
    std::vector<std::uint16_t> content;
    for (int done = 0; done < count; done += mostInOneRun) {
        const int part = std::min(count - done, mostInOneRun);
        std::istringstream said(
            Mbpoll(port, table, address + done, {"-c", std::to_string(part), "127.0.0.1"}));
        for (std::string line; std::getline(said, line);) {
            const auto value = line.find("]: \t");
            if (value != std::string::npos) {
                content.push_back(static_cast<std::uint16_t>(std::stoul(line.substr(value + 4))));
            }
        }
    }
    return content;
}
