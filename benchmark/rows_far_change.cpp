#include "farrows.h"
#include "measure.h"
#include "mqtt_source.h"
#include "wordmachine.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <deque>
#include <iterator>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

// A change of a value, to who watches at the machine and to who watches from far away.

namespace bench {

namespace {

using plclink::Clock;

constexpr std::chrono::milliseconds cycle{10};

/// When a value was what, for the first time.
using Times = std::vector<Clock::time_point>;

/// Takes the time at which each value of an operand comes. Any thread.
class Arrival : public plclink::Watcher
{
public:
    bool OnReading(const plclink::Reading& reading) override
    {
        const auto now = Clock::now();
        const std::lock_guard lock(m_mutex);
        if (reading.value >= m_times.size()) {
            m_times.resize(reading.value + 1);
        }
        if (m_times[reading.value] == Clock::time_point{}) {
            m_times[reading.value] = now;
        }
        return true;
    }

    void OnUnreadable(const std::string& reason) override { Say(reason); }

    Times All() const
    {
        const std::lock_guard lock(m_mutex);
        return m_times;
    }

private:
    mutable std::mutex m_mutex; ///< Guards m_times.
    Times m_times;
};

/// Watches all words of a machine.
class WordsWatch
{
public:
    explicit WordsWatch(plclink::MachineLink& link) : m_link(link), m_arrivals(wordCount)
    {
        const auto words = FlagWords(wordCount);
        for (std::size_t i = 0; i < wordCount; ++i) {
            m_link.Watch(m_arrivals[i], words[i]);
        }
    }

    ~WordsWatch()
    {
        for (const Arrival& arrival : m_arrivals) {
            m_link.Unwatch(arrival);
        }
    }

    WordsWatch(const WordsWatch&) = delete;
    WordsWatch(WordsWatch&&) = delete;
    WordsWatch& operator=(const WordsWatch&) = delete;
    WordsWatch& operator=(WordsWatch&&) = delete;

    /// Whether each word has come.
    bool IsComplete() const
    {
        return std::none_of(m_arrivals.begin(), m_arrivals.end(), [](const Arrival& arrival) {
            return arrival.All().empty();
        });
    }

    /// @return of each word when which value came.
    std::vector<Times> All() const
    {
        std::vector<Times> all;
        std::transform(
            m_arrivals.begin(),
            m_arrivals.end(),
            std::back_inserter(all),
            [](const Arrival& arrival) { return arrival.All(); });
        return all;
    }

private:
    plclink::MachineLink& m_link;
    std::deque<Arrival> m_arrivals;
};

/// Lets each word change at times of its own.
void ChangeWords(WordMachine& machine, std::chrono::seconds time)
{
    using std::chrono::milliseconds;
    constexpr milliseconds::rep shortest = 250;
    constexpr milliseconds::rep longest = 450;
    std::mt19937 random; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run.
    std::uniform_int_distribution<milliseconds::rep> pause(shortest, longest);
    const auto words = FlagWords(wordCount);
    std::vector<std::uint32_t> values(wordCount, 0);
    const auto end = Clock::now() + time;
    std::vector<Clock::time_point> due(wordCount, Clock::now());
    for (auto now = Clock::now(); now < end; now = Clock::now()) {
        for (std::size_t i = 0; i < wordCount; ++i) {
            if (now >= due[i]) {
                machine.Set(words[i].address, ++values[i]);
                due[i] = now + milliseconds(pause(random));
            }
        }
        machine.Turn();
        std::this_thread::sleep_for(cycle);
    }
}

/// What both have seen.
struct Seen
{
    std::vector<Times> near;
    std::vector<Times> far;
};

Seen WatchChanges()
{
    constexpr std::chrono::seconds time{15};
    constexpr std::chrono::seconds afterwards{1};
    const Broker broker({viewer, machineName});
    PublishedMachine machine(OrderOf(broker, machineName), [](const auto&) {});
    plclink::MachineLink link(std::make_unique<plcremote::MqttSource>(
        broker.Address(viewer, machineName), broker.Access(viewer), Say));
    const WordsWatch near(machine.Link());
    const WordsWatch far(link);
    link.Start();
    while (!far.IsComplete()) {
        machine.Words().Turn();
        std::this_thread::sleep_for(cycle);
    }
    ChangeWords(machine.Words(), time);
    std::this_thread::sleep_for(afterwards);
    return {near.All(), far.All()};
}

/// @return at how many ticks a debugger at the machine showed a value which one far away did not.
double TicksBetween(Clock::time_point near, Clock::time_point far)
{
    constexpr std::chrono::milliseconds tick{100};
    return static_cast<double>(far.time_since_epoch() / tick - near.time_since_epoch() / tick);
}

} // namespace

void ChangeRow()
{
    constexpr double most = 0.99;
    const Seen seen = WatchChanges();
    std::vector<double> delays;
    std::vector<double> ticks;
    for (std::size_t i = 0; i < wordCount; ++i) {
        const Times& near = seen.near[i];
        const Times& far = seen.far[i];
        RequireSame(near.size() == far.size(), "values from far away");
        for (std::size_t value = 1; value < near.size(); ++value) {
            RequireSame(near[value] <= far[value], "values from far away");
            delays.push_back(Seconds(far[value] - near[value]).count());
            ticks.push_back(TicksBetween(near[value], far[value]));
        }
    }
    Say("a change comes " + std::to_string(Median(delays)) +
        " s later to who is far away, of 99 in "
        "100 at most " +
        std::to_string(Percentile(delays, most)) + " s");
    PrintRow(
        "change in a cell far away, later than at the machine, 99th percentile",
        "ticks of the debugger",
        Percentile(ticks, most),
        1);
}

} // namespace bench
