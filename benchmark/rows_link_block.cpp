#include "linkrows.h"
#include "measure.h"
#include "modbus_place.h"

#include <condition_variable>
#include <mutex>
#include <vector>

// Many registers in one request, against one by one.

namespace bench {

namespace {

using plclink::Clock;

/// @return what a device that does not count its requests has in a register: byte a is a.
std::uint32_t UsualContent(std::uint32_t number)
{
    constexpr std::uint32_t high = 8;
    const std::uint32_t byte = bytesOfRegister * number & plclink::byteMask;
    return byte << high | (byte + 1);
}

/// Takes the time of each turn of a source that reads one register after the other. Any thread.
class Turns : public plclink::SourceEvents
{
public:
    void OnReadings(
        const plclink::WatchList& list,
        const std::vector<plclink::PlacedReading>& readings) override
    {
        for (const plclink::PlacedReading& placed : readings) {
            RequireSame(
                placed.reading.value == UsualContent(static_cast<std::uint32_t>(placed.place)),
                "registers of a range");
            if (placed.place == 0) {
                m_begin = placed.reading.taken;
            }
            if (placed.place + 1 == list.size()) {
                const std::lock_guard lock(m_mutex);
                m_times.push_back(Seconds(Clock::now() - m_begin).count());
                m_changed.notify_one();
            }
        }
    }

    void OnUnreadable(const plc::Operand&, const std::string& reason) override { Complain(reason); }

    void OnState(const plclink::LinkState& state) override { Complain(state.reason); }

    bool OnSteps(const plc::StepRange&, const std::vector<plc::StepState>&) override
    {
        return true;
    }

    /// Waits for so many turns after the first one, in which the device warms up.
    std::vector<double> WaitFor(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_times.size() > count; });
        return {m_times.begin() + 1, m_times.end()};
    }

private:
    Clock::time_point m_begin;
    std::mutex m_mutex; ///< Guards what follows.
    std::condition_variable m_changed;
    std::vector<double> m_times;
};

/// @return the times that it takes to read 1,000 registers, in seconds.
std::vector<double> BlockTimes(const Device& device, const std::string& settings, std::size_t turns)
{
    constexpr std::uint16_t count = 1000;
    auto list = std::make_shared<plclink::WatchList>();
    for (std::uint16_t i = 0; i < count; ++i) {
        list->push_back(OperandAt(i, plc::Width::Word));
    }
    Turns events;
    const auto source = OpenSource(device, "poll = 20\n" + settings);
    source->Watch(list);
    source->Start(events);
    return events.WaitFor(turns);
}

} // namespace

void BlockRow()
{
    constexpr int pairs = 5;
    constexpr std::size_t turnsTogether = 50;
    constexpr std::size_t turnsAlone = 5;
    const Device device("");
    std::vector<double> together;
    std::vector<double> alone;
    for (int i = 0; i < pairs; ++i) {
        const auto ofThis = BlockTimes(device, "", turnsTogether);
        together.insert(together.end(), ofThis.begin(), ofThis.end());
        const auto ofThat = BlockTimes(device, "registers = 1\n", turnsAlone);
        alone.insert(alone.end(), ofThat.begin(), ofThat.end());
    }
    PrintRow("1,000 registers of one range, time", "one by one", together, alone, 0.02);
}

} // namespace bench
