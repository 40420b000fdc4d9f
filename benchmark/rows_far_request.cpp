#include "farrows.h"
#include "file.h"
#include "measure.h"
#include "mqtt_source.h"
#include "wordmachine.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <mosquitto.h>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// A write to a machine far away and its answer, against a text that another client sends back.

namespace bench {

namespace {

constexpr const char* echoName = "echo";

/// Turns a machine as a controller does, on a thread of its own.
class Turning
{
public:
    explicit Turning(WordMachine& machine)
        : m_thread([this, &machine] {
              constexpr std::chrono::milliseconds turn{10};
              while (!m_stop) {
                  machine.Turn();
                  std::this_thread::sleep_for(turn);
              }
          })
    {
    }

    ~Turning()
    {
        m_stop = true;
        m_thread.join();
    }

    Turning(const Turning&) = delete;
    Turning(Turning&&) = delete;
    Turning& operator=(const Turning&) = delete;
    Turning& operator=(Turning&&) = delete;

private:
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

/// Hears when the machine runs.
class Running : public plclink::SourceEvents
{
public:
    void OnReadings(const plclink::WatchList&, const std::vector<plclink::PlacedReading>&) override
    {
    }

    void OnUnreadable(const plc::Operand&, const std::string& reason) override { Say(reason); }

    void OnState(const plclink::LinkState& state) override
    {
        if (state.status == plclink::LinkStatus::Running && !std::exchange(m_isSaid, true)) {
            m_running.set_value();
        }
    }

    bool OnSteps(const plc::StepRange&, const std::vector<plc::StepState>&) override
    {
        return true;
    }

    void Wait() { m_running.get_future().wait(); }

private:
    bool m_isSaid = false;
    std::promise<void> m_running;
};

/// A client of the bare library, on its thread.
class BareClient
{
public:
    using Take = std::function<void(const std::string& payload)>;

    /// @param topic is subscribed. @param take is called on the client's thread.
    BareClient(const Broker& broker, const std::string& user, std::string topic, Take take)
        : m_topic(std::move(topic)), m_take(std::move(take)),
          m_client(mosquitto_new(nullptr, true, this))
    {
        std::string password = base::ReadFile(broker.File(user + ".password")).operator*();
        password.pop_back();
        mosquitto_username_pw_set(m_client, user.c_str(), password.c_str());
        mosquitto_tls_set(
            m_client, broker.File("ca.crt").c_str(), nullptr, nullptr, nullptr, nullptr);
        mosquitto_int_option(m_client, MOSQ_OPT_TCP_NODELAY, 1);
        mosquitto_connect_callback_set(m_client, [](mosquitto* client, void* self, int) {
            mosquitto_subscribe(
                client, nullptr, static_cast<BareClient*>(self)->m_topic.c_str(), 0);
        });
        mosquitto_subscribe_callback_set(
            m_client, [](mosquitto*, void* self, int, int, const int*) {
                static_cast<BareClient*>(self)->m_ready.set_value();
            });
        mosquitto_message_callback_set(
            m_client, [](mosquitto*, void* self, const mosquitto_message* message) {
                static_cast<BareClient*>(self)->m_take(
                    {static_cast<const char*>(message->payload),
                     static_cast<std::size_t>(message->payloadlen)});
            });
        constexpr int keepAlive = 60;
        mosquitto_connect(m_client, "127.0.0.1", std::stoi(broker.Port()), keepAlive);
        mosquitto_loop_start(m_client);
        m_ready.get_future().wait();
    }

    ~BareClient()
    {
        mosquitto_disconnect(m_client);
        mosquitto_loop_stop(m_client, false);
        mosquitto_destroy(m_client);
    }

    BareClient(const BareClient&) = delete;
    BareClient(BareClient&&) = delete;
    BareClient& operator=(const BareClient&) = delete;
    BareClient& operator=(BareClient&&) = delete;

    void Send(const std::string& topic, const std::string& payload)
    {
        mosquitto_publish(
            m_client,
            nullptr,
            topic.c_str(),
            static_cast<int>(payload.size()),
            payload.data(),
            0,
            false);
    }

private:
    const std::string m_topic;
    const Take m_take;
    std::promise<void> m_ready;
    mosquitto* const m_client;
};

/// A text that goes over the broker to another client and comes back.
class Echo
{
public:
    explicit Echo(const Broker& broker)
        : m_far(
              broker,
              echoName,
              Topic("write", "+/+"),
              [this](const std::string& text) {
                  m_far.Send(Topic("answer", std::string(viewer) + "/1"), text);
              }),
          m_near(broker, viewer, Topic("answer", std::string(viewer) + "/+"), [this](const auto&) {
              m_back.set_value();
          })
    {
    }

    /// @return how long it takes, in seconds.
    double Time(const std::string& text)
    {
        m_back = {};
        const double begin = WallNow();
        m_near.Send(Topic("write", std::string(viewer) + "/1"), text);
        m_back.get_future().wait();
        return WallNow() - begin;
    }

private:
    static std::string Topic(const std::string& kind, const std::string& rest)
    {
        return std::string("plc/hall1/") + echoName + '/' + kind + '/' + rest;
    }

    std::promise<void> m_back;
    BareClient m_far;
    BareClient m_near;
};

/// How long each took, in seconds.
struct RequestTimes
{
    std::vector<double> writes{};
    std::vector<double> echoes{};
    bool areDone = true; ///< All of the writes.
};

/// @return how long a write takes that the machine does at once, in seconds; nothing when it has
///         failed.
std::optional<double> TimeOfWrite(plcremote::MqttSource& source, std::uint32_t value)
{
    std::promise<bool> isDone;
    const double begin = WallNow();
    source.Write(FlagWord(0), value, [&isDone](const auto& done) {
        isDone.set_value(done.operator bool());
    });
    return isDone.get_future().get() ? std::optional(WallNow() - begin) : std::nullopt;
}

RequestTimes MeasureRequests()
{
    constexpr std::uint32_t rounds = 200;
    constexpr std::size_t bytesOfWrite = 150;
    const Broker broker({viewer, machineName, echoName});
    PublishedMachine machine(OrderOf(broker, machineName), [](const auto&) {});
    const Turning turning(machine.Words());
    Running events;
    plcremote::MqttSource source(broker.Address(viewer, machineName), broker.Access(viewer), Say);
    source.Watch(std::make_shared<plclink::WatchList>(FlagWords(wordCount)));
    source.Start(events);
    events.Wait();
    Echo echo(broker);
    const std::string text(bytesOfWrite, 'x');
    RequestTimes times;
    for (std::uint32_t i = 1; i <= rounds; ++i) {
        const auto time = TimeOfWrite(source, i);
        times.areDone = times.areDone && time;
        times.writes.push_back(time.value_or(0));
        times.echoes.push_back(echo.Time(text));
    }
    return times;
}

} // namespace

void RequestRow()
{
    const RequestTimes times = MeasureRequests();
    RequireSame(times.areDone, "writes to a machine far away");
    const auto& [writes, echoes, areDone] = times;
    Say("a write takes " + std::to_string(Median(writes)) + " s, an echo " +
        std::to_string(Median(echoes)) + " s");
    PrintRow(
        "write to a machine far away, until it is answered",
        "a text that comes back",
        writes,
        echoes,
        2);
}

} // namespace bench
