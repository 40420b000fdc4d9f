#include "connection.h"

#include "broker_client.h"
#include "modbus_socket.h"
#include "random_id.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>
#include <unistd.h>
#include <utility>

namespace plcremote {

namespace {

using Clock = std::chrono::steady_clock;

/// How long a broker may take to let us in.
constexpr std::chrono::seconds patience{5};

/// How long a host may take to open its door.
constexpr std::chrono::milliseconds longestKnock{2000};

/// What has been handed over and has not left by then stands in the way of what comes after it.
constexpr std::chrono::milliseconds longestWay{200};

/// How long an end waits for the library, which looks names up by itself.
constexpr std::chrono::milliseconds longestStop{500};

/// Why there is no connection.
struct End
{
    std::string reason{};
    bool isRefused = false;

    bool operator==(const End& other) const
    {
        return reason == other.reason && isRefused == other.isRefused;
    }
};

} // namespace

class Connection::Impl
{
public:
    explicit Impl(ConnectionOrder order) : m_order(std::move(order)) { InitLibrary(); }

    ~Impl() = default;
    Impl(const Impl&) = delete;
    Impl(Impl&&) = delete;
    Impl& operator=(const Impl&) = delete;
    Impl& operator=(Impl&&) = delete;

    /// @param self this, which the thread keeps.
    void Start(ConnectionEvents& events, std::shared_ptr<Impl> self)
    {
        m_events = &events;
        m_thread = std::thread([self = std::move(self)] { self->Run(); });
    }

    /// No event comes any more when it returns.
    void Stop()
    {
        m_stop.Raise();
        if (!m_thread.joinable()) {
            return;
        }
        std::unique_lock lock(m_mutex);
        if (m_connected.wait_for(lock, longestStop, [this] { return !m_isConnecting; })) {
            lock.unlock();
            m_thread.join();
        } else {
            m_thread.detach(); // the library waits for a name, and nothing wakes it
        }
    }

    bool Publish(const std::string& topic, std::string_view payload, bool isRetained)
    {
        const std::lock_guard lock(m_mutex);
        if (m_client == nullptr || !m_isOpen || IsStuck()) {
            return false;
        }
        if (m_handed == m_left) {
            m_waitingSince = Clock::now();
        }
        ++m_handed;
        const int result = mosquitto_publish(
            m_client,
            nullptr,
            topic.c_str(),
            static_cast<int>(payload.size()),
            payload.data(),
            0,
            isRetained);
        if (result != MOSQ_ERR_SUCCESS) {
            --m_handed;
        }
        return result == MOSQ_ERR_SUCCESS;
    }

private:
    void Run()
    {
        BlockPipeSignal();
        auto pause = firstPause;
        while (!m_stop.IsRaised()) {
            m_wasIn = false;
            const End end = Serve();
            if (m_stop.IsRaised()) {
                break;
            }
            Tell(end);
            pause = m_wasIn ? firstPause : std::min(pause * 2, longestPause);
            const auto until = Clock::now() + pause;
            do {
                m_events->OnTurn();
            } while (m_stop.Wait(-1, 0, turnTime) == plclink::StopSignal::Woken::TimeOut &&
                     Clock::now() < until);
        }
    }

    void Tell(const End& end)
    {
        if (m_told && *m_told == end) {
            return;
        }
        m_told = end;
        m_events->OnDisconnected(end.reason, end.isRefused);
    }

    bool IsStuck() const
    {
        return m_handed != m_left && Clock::now() - m_waitingSince > longestWay;
    }

    /// Connects, and stays until the connection ends.
    End Serve()
    {
        const Client client(mosquitto_new(("plc-" + RandomId()).c_str(), true, this));
        if (!client) {
            return {"there is no memory for a connection"};
        }
        SetCallbacks(*client);
        if (std::string wrong = Prepare(*client, m_order); !wrong.empty()) {
            return {std::move(wrong), true};
        }
        // The library would wait for a host that says nothing for as long as the system does.
        const auto reached = plclink::ConnectTcp(
            m_order.address.host, std::to_string(m_order.address.port), longestKnock, m_stop);
        if (!reached) {
            return {reached.Message()};
        }
        ::close(*reached);
        m_end = {};
        m_certificate.clear();
        if (BeginToConnect(*client) != MOSQ_ERR_SUCCESS) {
            return EndOf();
        }
        {
            const std::lock_guard lock(m_mutex);
            m_client = client.get();
            m_handed = m_left = 0;
        }
        End end = Stay(*client);
        const std::lock_guard lock(m_mutex);
        m_client = nullptr;
        m_isOpen = false;
        return end;
    }

    int BeginToConnect(mosquitto& client)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_stop.IsRaised()) {
                return MOSQ_ERR_NO_CONN;
            }
            m_isConnecting = true;
        }
        const int result = Connect(client, m_order.address);
        {
            const std::lock_guard lock(m_mutex);
            m_isConnecting = false;
        }
        m_connected.notify_all();
        return result;
    }

    void SetCallbacks(mosquitto& client)
    {
        mosquitto_threaded_set(&client, true);
        mosquitto_int_option(&client, MOSQ_OPT_TCP_NODELAY, 1);
        mosquitto_connect_callback_set(&client, [](mosquitto*, void* self, int result) {
            static_cast<Impl*>(self)->OnConnect(result);
        });
        mosquitto_subscribe_callback_set(
            &client, [](mosquitto*, void* self, int, int count, const int* granted) {
                static_cast<Impl*>(self)->OnSubscribed(granted, granted + count);
            });
        mosquitto_message_callback_set(
            &client, [](mosquitto*, void* self, const mosquitto_message* message) {
                static_cast<Impl*>(self)->OnMessage(*message);
            });
        mosquitto_publish_callback_set(
            &client, [](mosquitto*, void* self, int) { static_cast<Impl*>(self)->OnLeft(); });
        mosquitto_log_callback_set(
            &client, [](mosquitto* said, void* self, int level, const char* text) {
                if (level == MOSQ_LOG_ERR) {
                    static_cast<Impl*>(self)->OnError(*said, text);
                }
            });
    }

    void OnConnect(int result)
    {
        constexpr int wrongPassword = 4;
        constexpr int notAuthorised = 5;
        if (result == wrongPassword || result == notAuthorised) {
            m_end = {
                m_order.address.user.empty() ? "the broker lets nobody in without a user"
                                             : "the broker does not accept the user \"" +
                                                   m_order.address.user + "\" with this password",
                true};
            return;
        }
        if (result != 0) {
            m_end = {
                "the broker does not let us in: " + std::string(mosquitto_connack_string(result)),
                true};
            return;
        }
        if (m_order.topics.empty()) {
            Open();
            return;
        }
        std::vector<char*> topics;
        for (std::string& topic : m_order.topics) {
            topics.push_back(topic.data());
        }
        mosquitto_subscribe_multiple(
            m_client, nullptr, static_cast<int>(topics.size()), topics.data(), 0, 0, nullptr);
    }

    void OnMessage(const mosquitto_message& message)
    {
        if (m_stop.IsRaised()) {
            return; // nobody could answer it any more
        }
        m_events->OnMessage(
            message.topic,
            {static_cast<const char*>(message.payload),
             static_cast<std::size_t>(message.payloadlen)},
            message.retain);
    }

    /// @param begin what the broker says to each of our topics, in their order.
    void OnSubscribed(const int* begin, const int* end)
    {
        constexpr int highestQos = 2;
        const auto* const denied =
            std::find_if(begin, end, [](int granted) { return granted > highestQos; });
        if (denied == end) {
            Open();
            return;
        }
        m_end = {
            "the broker does not let us hear \"" +
                m_order.topics.at(static_cast<std::size_t>(denied - begin)) + '"',
            true};
    }

    /// The way is free in both directions.
    void Open()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isOpen = true;
        }
        m_wasIn = true;
        m_told.reset();
        m_events->OnConnected();
    }

    void OnLeft()
    {
        const std::lock_guard lock(m_mutex);
        ++m_left;
        m_waitingSince = Clock::now();
    }

    /// Perhaps of the broker's certificate, which can be asked only now.
    void OnError(mosquitto& client, std::string_view error)
    {
        if (!m_wasIn && m_certificate.empty()) {
            m_certificate = CertificateFault(client, m_order.address.host, error);
        }
    }

    /// Runs the connection until it ends.
    End Stay(mosquitto& client)
    {
        const auto begun = Clock::now();
        auto turn = begun;
        for (;;) {
            if (m_stop.IsRaised()) {
                Close();
                return {};
            }
            const int result = mosquitto_loop(&client, static_cast<int>(turnTime.count()), 1);
            if (!m_end.reason.empty()) {
                return m_end;
            }
            if (result != MOSQ_ERR_SUCCESS) {
                return EndOf();
            }
            const auto now = Clock::now();
            if (now - turn >= turnTime) {
                turn = now;
                m_events->OnTurn();
            }
            if (!m_wasIn && now - begun > patience) {
                return {"the broker does not answer"};
            }
        }
    }

    /// Takes leave of a broker that has let us in.
    void Close()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isOpen = false;
        }
        if (m_wasIn) {
            TakeLeave(*m_client);
        }
    }

    End EndOf() const
    {
        if (!m_certificate.empty()) {
            return {"the broker's certificate is not trusted: " + m_certificate, true};
        }
        if (m_wasIn) {
            return {"the broker has ended the connection, or cannot be reached any more"};
        }
        return {"the broker cannot be reached"};
    }

    ConnectionOrder m_order;
    ConnectionEvents* m_events = nullptr; ///< Not owned; outlives this.

    // Of the thread.
    End m_end;                 ///< What the broker has said instead of letting us in.
    std::string m_certificate; ///< What is wrong with the broker's.
    bool m_wasIn = false;      ///< In this attempt.
    std::optional<End> m_told; ///< Since the last connection.

    plclink::StopSignal m_stop;

    std::mutex m_mutex;          ///< Guards what follows.
    bool m_isConnecting = false; ///< The library does so.
    std::condition_variable m_connected;
    bool m_isOpen = false;
    mosquitto* m_client = nullptr; ///< Not owned; null: there is no connection.
    std::uint64_t m_handed = 0;    ///< Messages for the network.
    std::uint64_t m_left = 0;      ///< Of these.
    Clock::time_point m_waitingSince;

    std::thread m_thread; ///< Last: it uses all of the above.
};

Connection::Connection(ConnectionOrder order) : m_impl(std::make_shared<Impl>(std::move(order))) {}

Connection::~Connection()
{
    m_impl->Stop();
}

void Connection::Start(ConnectionEvents& events)
{
    m_impl->Start(events, m_impl);
}

bool Connection::Publish(const std::string& topic, std::string_view payload, bool isRetained)
{
    return m_impl->Publish(topic, payload, isRetained);
}

} // namespace plcremote
