#include "broker.h"
#include "connection.h"
#include "farrows.h"
#include "measure.h"
#include "messages.h"
#include "publication.h"
#include "topics.h"

#include <algorithm>
#include <condition_variable>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <unistd.h>
#include <vector>

// A hall full of machines, on one broker.

namespace bench {

namespace {

using plcremote::publicationTick;

/// What was heard of all machines.
struct Heard
{
    std::size_t machines = 0;
    double messages = 0;
    double lost = 0;  ///< Holes in the sequences.
    double wrong = 0; ///< Not all values in one message, or a message again.
    double bytes = 0; ///< Of the texts.
};

/// Counts what all machines of a plant tell. Any thread.
class CountingViewer : private plcremote::ConnectionEvents
{
public:
    explicit CountingViewer(const Broker& broker)
        : m_address(broker.Address(viewer, "+")),
          m_connection(
              {m_address, broker.Access(viewer), {plcremote::MachineTopic(m_address, "values")}})
    {
        m_connection.Start(*this);
    }

    void WaitForMachines(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_sequences.size() == count; });
    }

    /// Begins to count anew. @return what was counted before.
    Heard Restart()
    {
        const std::lock_guard lock(m_mutex);
        m_heard.machines = m_sequences.size();
        m_sequences.clear();
        return std::exchange(m_heard, {});
    }

private:
    void OnConnected() override {}

    void OnDisconnected(const std::string& reason, bool) override { Say(reason); }

    void OnTurn() override {}

    void OnMessage(std::string_view topic, std::string_view payload, bool) override
    {
        const auto parsed = plcremote::ParseTopic(m_address, topic);
        const auto message = plcremote::ReadValues(payload);
        const std::lock_guard lock(m_mutex);
        m_heard.messages += 1;
        m_heard.bytes += static_cast<double>(payload.size());
        if (!parsed || !message || message->values.size() != wordCount) {
            m_heard.wrong += 1;
        } else {
            const auto [known, isNew] = m_sequences.emplace(parsed->machine, message->sequence);
            const std::uint64_t last = std::exchange(known->second, message->sequence);
            if (isNew) {
                m_changed.notify_one();
            } else if (message->sequence > last) {
                m_heard.lost += static_cast<double>(message->sequence - last - 1);
            } else {
                m_heard.wrong += 1;
            }
        }
    }

    const plclink::MqttAddress m_address;
    std::mutex m_mutex; ///< Guards what follows.
    std::condition_variable m_changed;
    std::map<std::string, std::uint64_t> m_sequences; ///< The last of each machine.
    Heard m_heard;
    plcremote::Connection m_connection; ///< Last: its thread uses all of the above.
};

std::string NameOf(std::size_t machine)
{
    constexpr std::size_t first = 1000;
    return "press" + std::to_string(first + machine);
}

std::vector<std::string> Users(std::size_t machines)
{
    std::vector<std::string> users{viewer};
    for (std::size_t i = 0; i < machines; ++i) {
        users.push_back(NameOf(i));
    }
    return users;
}

/// Machines, so many in each process as one program can connect.
std::vector<std::unique_ptr<Child>> StartMachines(const Broker& broker, std::size_t count)
{
    constexpr std::size_t together = 100;
    std::vector<std::unique_ptr<Child>> processes;
    for (std::size_t i = 0; i < count; i += together) {
        std::vector<std::string> command{
            FAR_MACHINES, broker.Port(), broker.File(""), std::to_string(wordCount)};
        for (std::size_t j = i; j < std::min(i + together, count); ++j) {
            command.push_back(NameOf(j));
        }
        processes.push_back(std::make_unique<Child>(command));
    }
    return processes;
}

/// @return processor time of a process, in seconds.
double CpuOfProcess(pid_t process)
{
    constexpr int fieldsBefore = 11; // Between the name and the times.
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(file, text);
    std::istringstream fields(text.substr(text.rfind(')') + 1));
    std::string skipped;
    for (int i = 0; i < fieldsBefore; ++i) {
        fields >> skipped;
    }
    double user = 0;
    double system = 0;
    fields >> user >> system;
    return (user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

/// What a plant has come to.
struct Figures
{
    Heard heard;
    double ticks = 0;      ///< Of all machines.
    double brokerLoad = 0; ///< Of a core.
};

Figures Measure(std::size_t machines)
{
    constexpr std::chrono::seconds time{15};
    Broker broker(Users(machines));
    const auto processes = StartMachines(broker, machines);
    for (const auto& process : processes) {
        process->WaitForLine("ready");
    }
    CountingViewer counter(broker);
    counter.WaitForMachines(machines);

    counter.Restart();
    const double begin = WallNow();
    const double cpu = CpuOfProcess(broker.Process().Id());
    std::this_thread::sleep_for(time);
    const double load = CpuOfProcess(broker.Process().Id()) - cpu;
    const Heard heard = counter.Restart();
    const double wall = WallNow() - begin;
    const double tick = std::chrono::duration<double>(publicationTick).count();
    return {heard, static_cast<double>(machines) * wall / tick, load / wall};
}

Figures MeasureChecked(std::size_t machines)
{
    const Figures figures = Measure(machines);
    RequireSame(
        figures.heard.machines == machines && figures.heard.wrong == 0,
        "values of " + std::to_string(machines) + " machines");
    Say("a message has " + std::to_string(figures.heard.bytes / figures.heard.messages) +
        " bytes; " + std::to_string(machines) + " machines take the broker " +
        std::to_string(figures.brokerLoad) + " of a core");
    return figures;
}

} // namespace

void PlantRow()
{
    constexpr std::size_t machines = 200;
    const Figures figures = MeasureChecked(machines);
    PrintRow(
        "200 machines of 20 values at 10 Hz: messages",
        "machines and ticks",
        figures.heard.messages / figures.ticks,
        1);
    PrintRow("the same: lost", "messages", figures.heard.lost / figures.heard.messages, 0);
    PrintRow("the same: processor of the broker", "one core", figures.brokerLoad, 0.3);
}

void LargePlantRow()
{
    constexpr std::size_t machines = 500;
    const Figures figures = MeasureChecked(machines);
    PrintRow("500 machines: lost", "messages", figures.heard.lost / figures.heard.messages, 0);
}

} // namespace bench
