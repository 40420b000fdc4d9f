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
    Change({"cafile ", "certfile ", "keyfile ", "tls_version "}, "");
    Start();
}

void Broker::Change(const std::vector<std::string>& without, const std::string& with) const
{
    std::string configuration = base::ReadFile(File("mosquitto.conf")).operator*();
    for (const std::string& setting : without) {
        configuration.insert(configuration.find('\n' + setting) + 1, "# ");
    }
    EXPECT_TRUE(base::ReplaceFile(File("mosquitto.conf"), configuration + with));
}

void Broker::PostdateCertificate()
{
    Stop();
    const char* const script = R"(
        cd "$0"
        exec 2>log
        openssl x509 -x509toreq -in broker.crt -signkey broker.key -out broker.csr
        touch index
        echo 01 >serial
        printf '%s\n' >ca.conf '[ca]' default_ca=all \
            '[all]' new_certs_dir=. database=index serial=serial default_md=sha256 policy=any \
            x509_extensions=names '[any]' commonName=supplied '[names]' subjectAltName=IP:127.0.0.1
        openssl ca -batch -notext -config ca.conf -cert ca.crt -keyfile ca.key \
            -in broker.csr -out broker.crt -startdate 20980101000000Z -enddate 20990101000000Z
    )";
    EXPECT_EQ(Child({"sh", "-e", "-c", script, File("")}).WaitForEnd(), "");
    Start();
}

void Broker::DenySubscriptions(const std::string& user)
{
    Stop();
    const std::string control = FirstLineOf({SCRIPTS "/broker", "mosquitto_ctrl"});
    const std::string plugIn =
        FirstLineOf({"sh", "-c", "ls ${0%/bin/*}/lib/*/mosquitto_dynamic_security.so", control});
    Child({control, "dynsec", "init", File("rights"), user, Password(user)}).WaitForEnd();
    std::string rights = base::ReadFile(File("rights")).operator*();
    const std::string everything = "\"#\"";
    for (std::size_t at = 0; (at = rights.find(everything)) != std::string::npos;) {
        rights.replace(at, everything.size(), "\"nothing\"");
    }
    EXPECT_TRUE(base::ReplaceFile(File("rights"), rights));
    // The access list knows no subscriptions.
    Change({"acl_file "}, "plugin " + plugIn + "\nplugin_opt_config_file " + File("rights") + '\n');
    Start();
}

std::string Broker::Password(const std::string& user) const
{
    std::string password = base::ReadFile(File(user + ".password")).operator*();
    password.pop_back();
    return password;
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
        Password(user)};
}
