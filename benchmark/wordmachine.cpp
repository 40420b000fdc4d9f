#include "wordmachine.h"

#include <cstdio>
#include <utility>

namespace bench {

plc::Operand FlagWord(std::uint16_t address)
{
    plc::Operand operand;
    operand.area = plc::Area::Flag;
    operand.width = plc::Width::Word;
    operand.address = address;
    return operand;
}

std::vector<plc::Operand> FlagWords(std::size_t count)
{
    constexpr std::size_t bytesOfWord = 2;
    std::vector<plc::Operand> words;
    for (std::size_t i = 0; i < count; ++i) {
        words.push_back(FlagWord(static_cast<std::uint16_t>(bytesOfWord * i)));
    }
    return words;
}

base::Result<void> WordMachine::Check(const plc::Operand& operand) const
{
    if (!(operand == FlagWord(operand.address)) || !plc::Exists(operand)) {
        return base::Failure{"this machine has flag words only"};
    }
    return {};
}

void WordMachine::Watch(std::shared_ptr<const plclink::WatchList> list)
{
    const std::lock_guard lock(m_mutex);
    m_list = std::move(list);
}

void WordMachine::Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done)
{
    {
        const std::lock_guard lock(m_mutex);
        m_words.at(operand.address) = value;
        m_writes.push_back({value, plclink::Clock::now()});
    }
    done({});
}

void WordMachine::Set(std::uint16_t address, std::uint32_t value)
{
    const std::lock_guard lock(m_mutex);
    m_words.at(address) = value;
}

void WordMachine::Turn()
{
    if (!std::exchange(m_isRunning, true)) {
        m_events->OnState({plclink::LinkStatus::Running});
    }
    std::shared_ptr<const plclink::WatchList> list;
    std::vector<plclink::PlacedReading> readings;
    {
        const std::lock_guard lock(m_mutex);
        list = m_list;
        const auto now = plclink::Clock::now();
        for (std::size_t i = 0; i < list->size(); ++i) {
            readings.push_back({i, {m_words.at((*list)[i].address), now}});
        }
    }
    m_events->OnReadings(*list, readings);
}

std::vector<WordMachine::Written> WordMachine::Writes() const
{
    const std::lock_guard lock(m_mutex);
    return m_writes;
}

PublishedMachine::PublishedMachine(plcremote::PublishOrder order, plcremote::Publisher::Log log)
    : PublishedMachine(std::make_unique<WordMachine>(), std::move(order), std::move(log))
{
}

PublishedMachine::PublishedMachine(
    std::unique_ptr<WordMachine> words,
    plcremote::PublishOrder order,
    plcremote::Publisher::Log log)
    : m_words(words.get()), m_link(std::move(words)),
      m_publisher(m_link, std::move(order), std::move(log), [](const std::string& reason) {
          std::fprintf(stderr, "bench: %s\n", reason.c_str());
      })
{
    m_link.Start();
    m_publisher.Start();
}

} // namespace bench
