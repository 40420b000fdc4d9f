#pragma once

#include "mqtt_address.h"
#include "result.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A connection to a broker that is made again and again, on a thread of its own.

namespace plcremote {

/// The first pause before a connection is made anew, and the longest; in between it doubles.
constexpr std::chrono::milliseconds firstPause{200};
constexpr std::chrono::milliseconds longestPause{1000};

/// How often OnTurn() is called.
constexpr std::chrono::milliseconds turnTime{50};

/// Hears of a connection. Every function is called on its thread, one at a time, and may publish.
class ConnectionEvents
{
public:
    ConnectionEvents() = default;
    virtual ~ConnectionEvents() = default;
    ConnectionEvents(const ConnectionEvents&) = delete;
    ConnectionEvents(ConnectionEvents&&) = delete;
    ConnectionEvents& operator=(const ConnectionEvents&) = delete;
    ConnectionEvents& operator=(ConnectionEvents&&) = delete;

    /// The broker has let us in and has acknowledged the subscriptions.
    virtual void OnConnected() = 0;

    /// There is no connection: it has ended, or could not be made. Told at each change of reason.
    /// @param reason a sentence: "the broker does not accept the password of "service"".
    /// @param isRefused the broker or its certificate was reached and something is wrong with who
    ///        one of both is; else nobody could be reached.
    virtual void OnDisconnected(const std::string& reason, bool isRefused) = 0;

    virtual void OnMessage(std::string_view topic, std::string_view payload, bool isRetained) = 0;

    /// Called some twenty times each second, also without a connection.
    virtual void OnTurn() = 0;
};

/// What the broker tells on our behalf when the connection breaks.
struct LastWill
{
    std::string topic;
    std::string payload;
};

struct ConnectionOrder
{
    plclink::MqttAddress address;
    plclink::MqttAccess access;
    std::vector<std::string> topics; ///< To be subscribed at each connection, QoS 0.
    std::optional<LastWill> will{};  ///< Retained.
};

class Connection
{
public:
    explicit Connection(ConnectionOrder order);
    /// No event comes any more when it returns. A connection that stands is closed in order, for
    /// which the broker does not tell the last will: what has been handed over leaves first, as
    /// far as 500 ms are enough.
    ~Connection();
    Connection(const Connection&) = delete;
    Connection(Connection&&) = delete;
    Connection& operator=(const Connection&) = delete;
    Connection& operator=(Connection&&) = delete;

    /// To be called once. @param events outlives the connection.
    void Start(ConnectionEvents& events);

    /// Hands a message with QoS 0 to the network, now or not at all. [any-thread]
    /// @return false when there is no connection, or what was handed over before has not left yet:
    ///         nothing is sent then, now or later.
    bool Publish(const std::string& topic, std::string_view payload, bool isRetained = false);

private:
    class Impl;
    const std::shared_ptr<Impl> m_impl; ///< Of the thread, too, which may have to be left alone.
};

} // namespace plcremote
