#pragma once

#include "reading.h"
#include "source.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

// The link to one machine, for any number of clients at once. No windows.

namespace plclink {

/// A value that does not change is told again after this time.
constexpr std::chrono::milliseconds refreshTime{1000};

/// One operand that a client watches. Calls come on the source's thread and must not call the link.
class Watcher
{
public:
    Watcher() = default;
    virtual ~Watcher() = default;
    Watcher(const Watcher&) = delete;
    Watcher(Watcher&&) = delete;
    Watcher& operator=(const Watcher&) = delete;
    Watcher& operator=(Watcher&&) = delete;

    /// The operand's first value, each change, and after refreshTime that it has not changed.
    /// @return false when it cannot be taken now; the newest one is told in the next turn then.
    virtual bool OnReading(const Reading& reading) = 0;

    /// The machine does not let it be read, now at least.
    /// @param reason a sentence.
    virtual void OnUnreadable(const std::string& reason) = 0;
};

/// What is known of an operand that somebody watches.
struct WatchedOperand
{
    plc::Operand operand;
    std::optional<Reading> newest{};
    std::string refusal{}; ///< Why there is none to come, as far as the machine said so.
};

/// What a client hears besides its values. Calls come on the source's thread and must not call the
/// link.
class Client
{
public:
    Client() = default;
    virtual ~Client() = default;
    Client(const Client&) = delete;
    Client(Client&&) = delete;
    Client& operator=(const Client&) = delete;
    Client& operator=(Client&&) = delete;

    /// The state at the beginning comes by MachineLink::State().
    virtual void OnState(const LinkState&) {}

    /// The states of the steps that this client has asked for last.
    /// @return false when it cannot take them now; they are offered again in the next turn then.
    virtual bool OnSteps(const plc::StepRange&, const std::vector<plc::StepState>&) { return true; }

    /// Another client has asked for steps: this one hears of its own no more. On the thread of who
    /// has asked.
    virtual void OnStepsTaken() {}
};

/// Asks the source once for the union of what all clients watch. Its functions may be called on any
/// thread, but not inside a call of a client or watcher, and never wait for the machine.
class MachineLink : private SourceEvents
{
public:
    explicit MachineLink(std::unique_ptr<Source> source);
    /// Clients and watchers hear no more when it returns. Watchers need not be unwatched before.
    ~MachineLink() override;
    MachineLink(const MachineLink&) = delete;
    MachineLink(MachineLink&&) = delete;
    MachineLink& operator=(const MachineLink&) = delete;
    MachineLink& operator=(MachineLink&&) = delete;

    /// To be called once, when all who must hear the first word have joined.
    void Start();

    /// @param client is left before it ends, or outlives the link.
    void Join(Client& client);
    /// The client hears no more when it returns; its steps are watched no longer.
    void Leave(Client& client);

    LinkState State() const;

    /// See Source::TurnTime().
    std::chrono::milliseconds TurnTime() const { return m_source->TurnTime(); }

    MessageLosses Losses() const { return m_source->Losses(); }

    /// @return why the machine can never tell this operand; see Source::Check().
    base::Result<void> Check(const plc::Operand& operand) const;

    /// @param watcher watches nothing yet; is unwatched before it ends, or outlives the link.
    /// @param operand has passed Check().
    void Watch(Watcher& watcher, const plc::Operand& operand);
    /// The watcher hears no more when it returns. One that watches nothing is left in peace.
    void Unwatch(const Watcher& watcher);

    /// @return the newest reading of an operand that somebody watches; none before the first one.
    std::optional<Reading> Newest(const plc::Operand& operand) const;

    /// All operands that are watched, each once.
    std::vector<WatchedOperand> Watched() const;

    /// How many readings the machine has told since the beginning.
    std::uint64_t ReadingCount() const;

    /// @param operand has passed Check().
    /// @param done see WriteDone.
    void Write(const plc::Operand& operand, std::uint32_t value, WriteDone done);

    /// Watches steps for a client instead of those of any client before; none ends it, when they
    /// are this client's.
    /// @param client has joined.
    void WatchSteps(Client& client, std::optional<plc::StepRange> range);

private:
    /// A watcher, and whether it has still to be told the newest reading.
    struct Listener
    {
        Watcher* watcher;
        bool due;
    };

    /// An operand that is watched.
    struct Slot
    {
        std::vector<Listener> listeners; ///< At least one.
        std::optional<Reading> newest{};
        std::string refusal{};    ///< Why there is none to come, as far as the machine said so.
        Clock::time_point told{}; ///< When all listeners were told a reading last.
    };

    void OnReadings(const WatchList& list, const std::vector<PlacedReading>& readings) override;
    void OnUnreadable(const plc::Operand& operand, const std::string& reason) override;
    void OnState(const LinkState& state) override;
    bool OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>& states) override;
    std::optional<std::size_t> PlaceOf(const plc::Operand& operand) const;
    Slot* Find(const plc::Operand& operand);
    bool Take(Slot& slot, const Reading& reading) const;
    void TellAll(Slot& slot);
    static void MakeDue(Slot& slot);
    void TellWhoIsDue();
    static bool Tell(Watcher& watcher, const Slot& slot);

    mutable std::mutex m_mutex; ///< Guards what follows; held while clients and watchers are told,
                                ///< so that none hears a word after it has gone.
    std::vector<Client*> m_clients;          // not owned
    std::shared_ptr<const WatchList> m_list; ///< Not null.
    std::vector<Slot> m_slots;               ///< One for each operand of the list.
    bool m_someAreDue = false;               ///< Listeners; perhaps of operands without a reading.
    LinkState m_state;
    std::uint64_t m_readingCount = 0;
    Client* m_stepsClient = nullptr; ///< Who asked for steps last; not owned.
    plc::StepRange m_steps{};        ///< Of that client.
    const bool m_tellsEveryReading;
    const std::unique_ptr<Source> m_source; ///< Last: its thread uses all of the above.
};

} // namespace plclink
