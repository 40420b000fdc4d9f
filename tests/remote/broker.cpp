#include "broker.h"

#include "file.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

std::string FreePort()
{
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(::bind(listener, any, length), 0);
    EXPECT_EQ(::getsockname(listener, any, &length), 0);
    ::close(listener);
    return std::to_string(ntohs(address.sin_port));
}

std::string FirstLineOf(const std::vector<std::string>& command)
{
    return Child(command).WaitForLine("");
}

} // namespace

Broker::Broker(const std::vector<std::string>& users, const std::vector<std::string>& options)
    : m_port(FreePort())
{
    std::vector<std::string> command{SAMPLES "/broker/make-plant"};
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(m_folder.File(""));
    command.insert(command.end(), users.begin(), users.end());
    EXPECT_EQ(Child(command).WaitForEnd(), "");

    std::string configuration = base::ReadFile(File("mosquitto.conf")).operator*();
    const std::string usual = "8883";
    configuration.replace(configuration.find(usual), usual.size(), m_port);
    for (const char* setting :
         {"\ncafile ", "\ncertfile ", "\nkeyfile ", "\npassword_file ", "\nacl_file "}) {
        configuration.insert(
            configuration.find(setting) + std::string(setting).size(), m_folder.File(""));
    }
    EXPECT_TRUE(base::ReplaceFile(File("mosquitto.conf"), configuration));
    Start();
}

void Broker::Start()
{
    static const std::string program = FirstLineOf({SCRIPTS "/broker"});
    constexpr int standardError = 2;
    m_process = std::make_unique<Child>(
        std::vector<std::string>{program, "-c", File("mosquitto.conf")}, standardError);
    EXPECT_NE(m_process->WaitForLine(" running"), "") << "the broker does not start";
}

void Broker::StopEncrypting()
{
    Stop();
    std::string configuration = base::ReadFile(File("mosquitto.conf")).operator*();
    for (const char* setting : {"\ncafile ", "\ncertfile ", "\nkeyfile ", "\ntls_version "}) {
        configuration.insert(configuration.find(setting) + 1, "# ");
    }
    EXPECT_TRUE(base::ReplaceFile(File("mosquitto.conf"), configuration));
    Start();
}

plclink::MqttAddress
Broker::Address(const std::string& user, const std::string& machine, const std::string& host) const
{
    return {true, user, host, static_cast<std::uint16_t>(std::stoi(m_port)), "hall1", machine};
}

plclink::MqttAccess Broker::Access(const std::string& user) const
{
    return {File("ca.crt"), File(user + ".password"), false};
}

std::vector<std::string> Broker::Login(const std::string& program, const std::string& user) const
{
    std::string password = base::ReadFile(File(user + ".password")).operator*();
    password.pop_back();
    return {
        program,
        "-h",
        "127.0.0.1",
        "-p",
        m_port,
        "--cafile",
        File("ca.crt"),
        "-u",
        user,
        "-P",
        password};
}
