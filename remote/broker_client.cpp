#include "broker_client.h"

#include "broker_access.h"

#include <openssl/ssl.h>
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

std::string CertificateFault(mosquitto& client, const std::string& host, std::string_view error)
{
    const auto* const tls = static_cast<const SSL*>(mosquitto_ssl_get(&client));
    if (tls == nullptr) {
        return {};
    }
    const long verdict = SSL_get_verify_result(tls);
    if (verdict != X509_V_OK) {
        return X509_verify_cert_error_string(verdict);
    }
    // Only the library's words tell it from a handshake that merely breaks.
    const bool isOfAnother = error.find("host name verification failed") != std::string_view::npos;
    return isOfAnother ? "it is not of \"" + host + '"' : "";
}

} // namespace plcremote
