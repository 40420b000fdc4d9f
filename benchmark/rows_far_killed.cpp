#include "farrows.h"
#include "measure.h"
#include "messages.h"
#include "mqtt_source.h"
#include "wordmachine.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// The broker is killed under machines that are watched and written, and comes back.

namespace bench {

namespace {

using plclink::Clock;

constexpr std::size_t machineCount = 24;

/// A write as its viewer knows it.
struct Sent
{
    std::uint32_t value = 0;
    Clock::time_point when{};
    bool isWithdrawn = false; ///< It was said at once that it would not be done.
};

/// Takes the time of the newest values.
class NewestValues : public plclink::SourceEvents
{
public:
    void OnReadings(
        const plclink::WatchList&, const std::vector<plclink::PlacedReading>& readings) override
    {
        if (!readings.empty()) {
            {
                const std::lock_guard lock(m_mutex);
                m_came = Clock::now();
            }
            m_changed.notify_one();
        }
    }

    void OnUnreadable(const plc::Operand&, const std::string& reason) override { Say(reason); }

    void OnState(const plclink::LinkState&) override {}

    bool OnSteps(const plc::StepRange&, const std::vector<plc::StepState>&) override
    {
        return true;
    }

    /// @return when the first come after this time.
    Clock::time_point WaitForSomeAfter(Clock::time_point time)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_came > time; });
        return m_came;
    }

private:
    std::mutex m_mutex; ///< Guards what follows.
    std::condition_variable m_changed;
    Clock::time_point m_came{};
};

/// A machine, and who watches and writes it from far away.
class WatchedMachine
{
public:
    WatchedMachine(const Broker& broker, const std::string& name)
        : m_machine(OrderOf(broker, name), [](const auto&) {}),
          m_source(broker.Address(viewer, name), broker.Access(viewer), [](const auto&) {})
    {
        m_source.Watch(std::make_shared<plclink::WatchList>(FlagWords(wordCount)));
        m_source.Start(m_newest);
    }

    NewestValues& Newest() { return m_newest; }

    WordMachine& Words() { return m_machine.Words(); }

    void Write(std::uint32_t value)
    {
        // An answer may come after the row has ended.
        const auto hasFailed = std::make_shared<std::atomic<bool>>(false);
        const auto now = Clock::now();
        m_source.Write(FlagWord(0), value, [hasFailed](const auto& done) { *hasFailed = !done; });
        m_sent.push_back({value, now, *hasFailed});
    }

    std::size_t SentCount() const { return m_sent.size(); }

    std::size_t DoneCount() const { return m_machine.Words().Writes().size(); }

    /// @return how many writes were done that must not have been: late, twice, or after it was said
    ///         that they would not be.
    std::size_t WrongCount() const
    {
        std::map<std::uint32_t, int> times;
        std::size_t wrong = 0;
        for (const WordMachine::Written& written : m_machine.Words().Writes()) {
            const auto sent =
                std::find_if(m_sent.begin(), m_sent.end(), [&](const Sent& candidate) {
                    return candidate.value == written.value;
                });
            const bool isRight = sent != m_sent.end() && !sent->isWithdrawn &&
                                 written.when - sent->when <= plcremote::writePatience &&
                                 ++times[written.value] == 1;
            wrong += isRight ? 0 : 1;
        }
        return wrong;
    }

private:
    PublishedMachine m_machine;
    NewestValues m_newest;
    std::vector<Sent> m_sent;
    plcremote::MqttSource m_source; ///< Last: its thread uses all of the above.
};

/// Turns all machines, and writes them one after the other, each value once.
class Plant
{
public:
    explicit Plant(const Broker& broker)
    {
        for (std::size_t i = 0; i < machineCount; ++i) {
            m_machines.emplace_back(broker, NameOfMachine(i));
        }
        m_thread = std::thread([this] { Run(); });
    }

    ~Plant() { End(); }

    Plant(const Plant&) = delete;
    Plant(Plant&&) = delete;
    Plant& operator=(const Plant&) = delete;
    Plant& operator=(Plant&&) = delete;

    static std::string NameOfMachine(std::size_t i) { return "press" + std::to_string(i); }

    /// @return the last of the times at which the values of each come again after this one.
    Clock::time_point WaitForAllAfter(Clock::time_point time)
    {
        Clock::time_point last = time;
        for (WatchedMachine& machine : m_machines) {
            last = std::max(last, machine.Newest().WaitForSomeAfter(time));
        }
        return last;
    }

    void WriteFromNowOn() { m_writes = true; }

    /// Ends the turning and the writing.
    void End()
    {
        m_stop = true;
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }

    std::deque<WatchedMachine>& Machines() { return m_machines; }

private:
    void Run()
    {
        constexpr std::chrono::milliseconds turn{10};
        for (std::uint32_t value = 1; !m_stop; ++value) {
            for (WatchedMachine& machine : m_machines) {
                machine.Words().Turn();
            }
            if (m_writes) {
                m_machines[value % machineCount].Write(value);
            }
            std::this_thread::sleep_for(turn);
        }
    }

    std::deque<WatchedMachine> m_machines;
    std::atomic<bool> m_writes{false};
    std::atomic<bool> m_stop{false};
    std::thread m_thread; ///< Last: it uses all of the above.
};

} // namespace

void BrokerKilledRow()
{
    using std::chrono::milliseconds;
    constexpr double goal = 5;
    const std::vector<milliseconds> absences{milliseconds(1000), milliseconds(2500)};
    constexpr milliseconds before{1000};
    constexpr milliseconds afterwards{3000};
    std::vector<std::string> users{viewer};
    for (std::size_t i = 0; i < machineCount; ++i) {
        users.push_back(Plant::NameOfMachine(i));
    }
    double longest = 0;
    std::size_t sent = 0;
    std::size_t done = 0;
    std::size_t wrong = 0;
    {
        Broker broker(users);
        Plant plant(broker);
        plant.WaitForAllAfter({});
        plant.WriteFromNowOn();
        for (const milliseconds away : absences) {
            std::this_thread::sleep_for(before);
            broker.Process().Kill();
            std::this_thread::sleep_for(away);
            broker.Start();
            const auto back = Clock::now();
            longest = std::max(longest, Seconds(plant.WaitForAllAfter(back) - back).count());
            std::this_thread::sleep_for(afterwards);
        }
        plant.End();
        std::this_thread::sleep_for(afterwards);
        for (const WatchedMachine& machine : plant.Machines()) {
            sent += machine.SentCount();
            done += machine.DoneCount();
            wrong += machine.WrongCount();
        }
    }
    Say(std::to_string(done) + " of " + std::to_string(sent) + " writes were done");
    PrintRow(
        "broker killed and started again: values of 24 machines",
        "seconds after its return",
        longest,
        goal);
    PrintRow(
        "the same: writes done late, twice, or though given up",
        "writes",
        static_cast<double>(wrong) / static_cast<double>(sent),
        0);
}

} // namespace bench
