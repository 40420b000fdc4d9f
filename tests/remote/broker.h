#pragma once

#include "child.h"
#include "mqtt_address.h"
#include "tempdir.h"

#include <memory>
#include <string>
#include <vector>

/// A broker that others have written, with the configuration that is shipped, on a port that the
/// system has chosen, for a plant called hall1.
class Broker
{
public:
    /// @param users who is let in, each with a password of its own.
    /// @param options of samples/broker/make-plant.
    explicit Broker(
        const std::vector<std::string>& users, const std::vector<std::string>& options = {});

    void Start();

    void Stop() { m_process.reset(); }

    /// Starts anew, without certificates.
    void StopEncrypting();

    /// Starts anew, with a certificate that is not valid yet.
    void PostdateCertificate();

    /// Starts anew, and refuses whatever this user subscribes.
    void DenySubscriptions(const std::string& user);

    Child& Process() { return *m_process; }

    const std::string& Port() const { return m_port; }

    std::string File(const std::string& name) const { return m_folder.File(name); }

    /// @param host as the certificate names it, or not.
    plclink::MqttAddress Address(
        const std::string& user,
        const std::string& machine,
        const std::string& host = "127.0.0.1") const;
    plclink::MqttAccess Access(const std::string& user) const;

    /// The words with which mosquitto_pub and mosquitto_sub log in.
    std::vector<std::string> Login(const std::string& program, const std::string& user) const;

private:
    /// Changes the configuration.
    /// @param without how the lines begin that hold no longer.
    void Change(const std::vector<std::string>& without, const std::string& with) const;
    std::string Password(const std::string& user) const;

    const TempDir m_folder;
    std::string m_port;
    std::unique_ptr<Child> m_process;
};
