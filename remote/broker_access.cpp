#include "broker_access.h"

#include "file.h"

#include <arpa/inet.h>
#include <cstdint>
#include <netinet/in.h>
#include <sys/stat.h>

namespace plcremote {

namespace {

bool IsLoopback(const std::string& host)
{
    in_addr address{};
    constexpr std::uint32_t network = 127;
    constexpr unsigned bitsOfHost = 24;
    return host == "localhost" || host == "::1" ||
           (::inet_pton(AF_INET, host.c_str(), &address) == 1 &&
            ntohl(address.s_addr) >> bitsOfHost == network);
}

} // namespace

base::Result<std::string> ReadPasswordFile(const std::string& file)
{
    struct stat status
    {
    };

    constexpr mode_t others = S_IRWXG | S_IRWXO;
    if (::stat(file.c_str(), &status) == 0 && (status.st_mode & others) != 0) {
        return base::Failure{
            "others can read the password file \"" + file + "\" (chmod 600 helps)"};
    }
    auto text = base::ReadFile(file);
    if (!text) {
        return text;
    }
    const std::string line = text->substr(0, text->find_first_of("\r\n"));
    if (line.empty()) {
        return base::Failure{"there is no password in \"" + file + '"'};
    }
    return line;
}

std::string OpenAccessError(const plclink::MqttAddress& address, const plclink::MqttAccess& access)
{
    if (address.isEncrypted || access.mayBeOpen || IsLoopback(address.host)) {
        return {};
    }
    return "mqtt is not encrypted and goes to this machine only (mqtts is; --insecure says that it "
           "may go to \"" +
           address.host + "\" all the same)";
}

} // namespace plcremote
