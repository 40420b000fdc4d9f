#include "broker_client.h"

#include "broker_access.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <mutex>
#include <openssl/ssl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace plcremote {

namespace {

/// The certificate is checked, and the name in it; nothing switches that off.
std::string Encrypt(mosquitto& client, const std::string& authorities)
{
    constexpr const char* systemsAuthorities = "/etc/ssl/certs";
    const int result = mosquitto_tls_set(
        &client,
        authorities.empty() ? nullptr : authorities.c_str(),
        authorities.empty() ? systemsAuthorities : nullptr,
        nullptr,
        nullptr,
        nullptr);
    return result == MOSQ_ERR_SUCCESS ? ""
                                      : "cannot read the certificates in \"" + authorities + '"';
}

} // namespace

void InitLibrary()
{
    // Never cleaned up: threads of other connections may still use it.
    [[maybe_unused]] static const int done = mosquitto_lib_init();
}

void BlockPipeSignal()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

std::string Prepare(mosquitto& client, const ConnectionOrder& order)
{
    if (std::string wrong = OpenAccessError(order.address, order.access); !wrong.empty()) {
        return wrong;
    }
    if (!order.address.user.empty()) {
        std::string password;
        if (!order.access.passwordFile.empty()) {
            auto read = ReadPasswordFile(order.access.passwordFile);
            if (!read) {
                return read.Message();
            }
            password = *std::move(read);
        }
        mosquitto_username_pw_set(&client, order.address.user.c_str(), password.c_str());
    }
    if (order.will) {
        mosquitto_will_set(
            &client,
            order.will->topic.c_str(),
            static_cast<int>(order.will->payload.size()),
            order.will->payload.data(),
            0,
            true);
    }
    return order.address.isEncrypted ? Encrypt(client, order.access.authorities) : "";
}

int Connect(mosquitto& client, const plclink::MqttAddress& address)
{
    constexpr int keepAliveSeconds = 5; // the shortest that the library takes
    // At the first connection the library prepares its encryption, as if there were one thread.
    static std::mutex one;
    const std::lock_guard lock(one);
    return mosquitto_connect(&client, address.host.c_str(), address.port, keepAliveSeconds);
}

std::string CertificateFault(mosquitto& client, const std::string& host, std::string_view error)
{
    const auto* const tls = static_cast<const SSL*>(mosquitto_ssl_get(&client));
    if (tls == nullptr) {
        return {};
    }
    const long verdict = SSL_get_verify_result(tls);
    if (verdict == X509_V_ERR_CERT_NOT_YET_VALID || verdict == X509_V_ERR_CERT_HAS_EXPIRED) {
        return std::string(X509_verify_cert_error_string(verdict)) +
               " (is the clock of this machine right?)";
    }
    if (verdict != X509_V_OK) {
        return X509_verify_cert_error_string(verdict);
    }
    // Only the library's words tell it from a handshake that merely breaks.
    const bool isOfAnother = error.find("host name verification failed") != std::string_view::npos;
    return isOfAnother ? "it is not of \"" + host + '"' : "";
}

void TakeLeave(mosquitto& client)
{
    constexpr std::chrono::milliseconds longest{500};
    const auto until = std::chrono::steady_clock::now() + longest;
    const auto left = [until] {
        const auto time = until - std::chrono::steady_clock::now();
        return std::max(
            static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()),
            0);
    };
    // Held open beside the library, until the broker closes: who closes while something comes has
    // the system tell the broker to forget what it has not read yet.
    pollfd line{::dup(mosquitto_socket(&client)), POLLIN, 0};
    mosquitto_disconnect(&client);
    while (left() > 0 && mosquitto_loop(&client, left(), 1) == MOSQ_ERR_SUCCESS) {
    }
    std::array<char, 4096> unheard{};
    while (::poll(&line, 1, left()) > 0 && ::read(line.fd, unheard.data(), unheard.size()) > 0) {
    }
    ::close(line.fd);
}

} // namespace plcremote
