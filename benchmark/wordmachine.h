#pragma once

#include "machine_link.h"
#include "publisher.h"
#include "source.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

// A machine that is nothing but flag words, and that is published.

namespace bench {

using Seconds = std::chrono::duration<double>;

/// The operand "MW" of this address.
plc::Operand FlagWord(std::uint16_t address);

/// So many of them, side by side from MW0 on.
std::vector<plc::Operand> FlagWords(std::size_t count);

/// Its thread is the one that calls Turn().
class WordMachine : public plclink::Source
{
public:
    /// A write as it was done.
    struct Written
    {
        std::uint32_t value;
        plclink::Clock::time_point when;
    };

    void Start(plclink::SourceEvents& events) override { m_events = &events; }

    base::Result<void> Check(const plc::Operand& operand) const override;
    void Watch(std::shared_ptr<const plclink::WatchList> list) override;
    /// Does it at once.
    void Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done) override;

    /// [any-thread]
    void Set(std::uint16_t address, std::uint32_t value);

    /// Tells all that is watched. To be called after Start().
    void Turn();

    /// All writes so far. [any-thread]
    std::vector<Written> Writes() const;

private:
    static constexpr std::size_t bytes = 512; ///< Of flags.

    plclink::SourceEvents* m_events = nullptr; ///< Not owned; outlives this.
    bool m_isRunning = false;                  ///< The link has been told.

    mutable std::mutex m_mutex; ///< Guards what follows.
    std::shared_ptr<const plclink::WatchList> m_list = std::make_shared<plclink::WatchList>();
    std::array<std::uint32_t, bytes> m_words{}; ///< By address.
    std::vector<Written> m_writes;
};

/// Such a machine with its link and its publisher.
class PublishedMachine
{
public:
    /// @param log takes what the publisher says. [any-thread]
    PublishedMachine(plcremote::PublishOrder order, plcremote::Publisher::Log log);

    WordMachine& Words() { return *m_words; }

    const WordMachine& Words() const { return *m_words; }

    plclink::MachineLink& Link() { return m_link; }

private:
    explicit PublishedMachine(
        std::unique_ptr<WordMachine> words,
        plcremote::PublishOrder order,
        plcremote::Publisher::Log log);

    WordMachine* const m_words; ///< Belongs to the link.
    plclink::MachineLink m_link;
    plcremote::Publisher m_publisher; ///< Last: its thread uses all of the above.
};

} // namespace bench
