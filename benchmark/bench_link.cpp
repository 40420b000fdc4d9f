#include "linkrows.h"
#include "machine_link.h"
#include "measure.h"
#include "modbus_map.h"
#include "modbus_source.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// The rows of the link with a Modbus device: a server that others have written.

namespace {

using bench::Device;
using bench::PrintRow;
using bench::Seconds;
using plclink::Clock;

/// Lets each even register hold its own address, and each odd one the number of the request.
const char* const counting = "--numbered";

constexpr unsigned halfOfDoubleWord = 16;
constexpr std::uint32_t registerMask = 0xFFFF;

/// A reading, and when it came.
struct Arrival
{
    plclink::Reading reading;
    Clock::time_point when;
};

/// What a double word of a counting device says that begins at an even register.
std::uint32_t RegisterIn(const Arrival& arrival)
{
    return arrival.reading.value >> halfOfDoubleWord;
}

std::uint32_t NumberIn(const Arrival& arrival)
{
    return arrival.reading.value & registerMask;
}

/// Keeps what it is told of one operand. Any thread.
class Arrivals : public plclink::Watcher
{
public:
    bool OnReading(const plclink::Reading& reading) override
    {
        {
            const std::lock_guard lock(m_mutex);
            m_all.push_back({reading, Clock::now()});
        }
        m_changed.notify_one();
        return true;
    }

    void OnUnreadable(const std::string& reason) override { bench::Complain(reason); }

    std::vector<Arrival> All() const
    {
        const std::lock_guard lock(m_mutex);
        return m_all;
    }

    /// Waits for the first one that comes after this time.
    Arrival WaitForOneAfter(Clock::time_point time)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return !m_all.empty() && m_all.back().when > time; });
        return *std::find_if(m_all.begin(), m_all.end(), [&](const Arrival& arrival) {
            return arrival.when > time;
        });
    }

private:
    mutable std::mutex m_mutex; ///< Guards what follows.
    std::condition_variable m_changed;
    std::vector<Arrival> m_all;
};

/// A link that watches double words of a device that counts its requests.
class WatchingLink
{
public:
    /// @param settings as of OpenSource().
    /// @param registers where the operands begin.
    WatchingLink(
        const Device& device,
        const std::string& settings,
        const std::vector<std::uint16_t>& registers)
        : m_registers(registers), m_arrivals(registers.size()),
          m_link(bench::OpenSource(device, settings))
    {
        for (std::size_t i = 0; i < registers.size(); ++i) {
            m_link.Watch(m_arrivals[i], bench::OperandAt(registers[i], plc::Width::DoubleWord));
        }
        m_link.Start();
    }

    /// @return the last to come of each operand's first reading after this time.
    Arrival WaitForAllAfter(Clock::time_point time)
    {
        Arrival last{{}, time};
        for (Arrivals& arrivals : m_arrivals) {
            const Arrival first = arrivals.WaitForOneAfter(time);
            last = first.when > last.when ? first : last;
        }
        return last;
    }

    /// All readings of each operand.
    std::vector<std::vector<Arrival>> All() const
    {
        std::vector<std::vector<Arrival>> all;
        std::transform(
            m_arrivals.begin(),
            m_arrivals.end(),
            std::back_inserter(all),
            [](const Arrivals& arrivals) { return arrivals.All(); });
        return all;
    }

    /// Ends the program unless all double words are what the device has: each holds its own
    /// register, and what came later was asked for later.
    /// @param begin when the device began to count its requests.
    void RequireTruth(Clock::time_point begin) const
    {
        const auto all = All();
        for (std::size_t i = 0; i < all.size(); ++i) {
            std::uint32_t number = 0;
            for (const Arrival& arrival : all[i]) {
                bench::RequireSame(
                    RegisterIn(arrival) == m_registers[i] &&
                        (arrival.when < begin || NumberIn(arrival) > number),
                    "values of a device");
                number = arrival.when < begin ? 0 : NumberIn(arrival);
            }
        }
    }

private:
    const std::vector<std::uint16_t> m_registers;
    std::vector<Arrivals> m_arrivals;
    plclink::MachineLink m_link; ///< Last: it uses all of the above.
};

constexpr std::chrono::milliseconds poll{100};

/// Watches double words all over 200 registers.
std::unique_ptr<WatchingLink> Watch20(const Device& device)
{
    constexpr std::uint16_t count = 20;
    constexpr std::uint16_t distance = 10;
    constexpr std::uint16_t last = 198;
    std::vector<std::uint16_t> registers;
    for (std::uint16_t i = 0; i < count; ++i) {
        registers.push_back(static_cast<std::uint16_t>(distance * i));
    }
    registers.back() = last;
    auto link = std::make_unique<WatchingLink>(
        device, "poll = " + std::to_string(poll.count()) + "\n", registers);
    link->WaitForAllAfter({});
    return link;
}

void PollRow()
{
    constexpr std::chrono::minutes time{1};
    constexpr std::uint32_t requestsOfPoll = 2;
    const Device device(counting);
    const auto link = Watch20(device);
    const double wall = bench::WallNow();
    const double cpu = bench::CpuNow();
    std::this_thread::sleep_for(time);
    const double load = (bench::CpuNow() - cpu) / (bench::WallNow() - wall);
    link->RequireTruth({});

    const auto all = link->All();
    double wrong = 0;
    for (const std::vector<Arrival>& ofOperand : all) {
        for (std::size_t i = 1; i < ofOperand.size(); ++i) {
            const std::uint32_t since = NumberIn(ofOperand[i]) - NumberIn(ofOperand[i - 1]);
            wrong += since == requestsOfPoll ? 0 : 1;
        }
    }
    const std::vector<Arrival>& ofOne = all.front();
    const auto polls = static_cast<double>(ofOne.size() - 1);
    const double requests = NumberIn(ofOne.back()) - NumberIn(ofOne.front());
    const double due = Seconds(ofOne.back().reading.taken - ofOne.front().reading.taken) / poll;
    PrintRow(
        "20 operands over 200 registers: requests, counted in the device",
        "polls",
        requests / polls,
        requestsOfPoll);
    PrintRow("the same at 10 Hz for a minute: not answered once", "polls", wrong / polls, 0);
    PrintRow("the same: left out", "polls due", std::max(0.0, due - polls) / due, 0.005);
    PrintRow("the same: processor", "one core", load, 0.02);
}

/// Time in which a wrong value would have come.
constexpr std::chrono::seconds afterwards{2};

/// @return after what time all values are back, in seconds.
double TimeToReturn(Device& device, WatchingLink& link, std::chrono::milliseconds away)
{
    device.Signal(SIGSTOP);
    std::this_thread::sleep_for(away);
    const auto back = Clock::now();
    device.Signal(SIGCONT);
    const double time = Seconds(link.WaitForAllAfter(back).when - back).count();
    std::this_thread::sleep_for(afterwards);
    link.RequireTruth({});
    return time;
}

void StoppedRow()
{
    constexpr int times = 10;
    constexpr std::chrono::milliseconds away{3000};
    constexpr std::chrono::minutes longAway{1};
    constexpr double goal = 1.5;
    const char* const against = "seconds after its return";
    // The device returns at all times between two connections that the link tries.
    const auto step = (plclink::usualTimeout + plclink::longestPause) / times;
    Device device(counting);
    const auto link = Watch20(device);
    double longest = 0;
    for (int i = 0; i < times; ++i) {
        longest = std::max(longest, TimeToReturn(device, *link, away + i * step));
    }
    PrintRow("device stopped for 3 s: values, the latest of 10 times", against, longest, goal);
    PrintRow(
        "device stopped for a minute: values",
        against,
        TimeToReturn(device, *link, longAway),
        goal);
}

void RestartedRow()
{
    constexpr int times = 9;
    constexpr std::chrono::seconds away{3};
    double longest = 0;
    for (int i = 0; i < times; ++i) {
        Device device(counting);
        const auto link = Watch20(device);
        device.Kill();
        std::this_thread::sleep_for(away);
        const auto begin = Clock::now();
        device.StartAgain();
        const auto back = Clock::now();
        longest = std::max(longest, Seconds(link->WaitForAllAfter(back).when - back).count());
        std::this_thread::sleep_for(afterwards);
        link->RequireTruth(begin);
    }
    PrintRow(
        "device killed and started again: values, the latest of 9 times",
        "seconds after its return",
        longest,
        2);
}

} // namespace

int main(int argc, char** argv)
{
    return bench::RunRows(
        {{"link-block", bench::BlockRow},
         {"link-poll", PollRow},
         {"link-stopped", StoppedRow},
         {"link-restarted", RestartedRow}},
        argc,
        argv);
}
