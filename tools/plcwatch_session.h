#pragma once

#include "machine_link.h"
#include "plcwatch_options.h"
#include "plcwatch_text.h"
#include "publisher.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What plcwatch does with a machine. The thread of main().

namespace plcwatch {

/// What a session needs of the program around it.
struct Surroundings
{
    /// Writes a text out. @return false when nobody reads it any more.
    std::function<bool(const std::string& text)> print;
    /// Says something to the person at the program.
    std::function<void(const std::string& sentence)> tell;
    /// Waits. @return the status to end with at once, when the program is told to.
    std::function<std::optional<int>(std::chrono::milliseconds time)> wait;
    bool isTerminal = false;
    std::size_t height = 0; ///< Lines of the terminal.
};

class Session
{
public:
    /// @param source not started.
    Session(const Options& options, std::unique_ptr<plclink::Source> source, Surroundings around);

    /// @param list for Options::list.
    /// @return the program's exit status.
    /// @throws std::runtime_error when a file that Options::publish needs is missing or damaged.
    int Watch(const std::vector<Variable>& list);
    int Read();
    int Write();

private:
    /// A variable that is watched, and what was last printed of it.
    struct Row : plclink::Watcher
    {
        explicit Row(Variable theVariable) : variable(std::move(theVariable)) {}

        bool OnReading(const plclink::Reading&) override { return true; }

        void OnUnreadable(const std::string& theReason) override;
        std::string TakeReason();

        const Variable variable;
        std::string printed;    ///< Empty: nothing yet.
        bool isUnknown = false; ///< The machine does not let it be read.

    private:
        std::mutex m_mutex; ///< Guards m_reason.
        std::string m_reason;
    };

    using Clock = plclink::Clock;

    void Add(const Variable& variable);
    void Publish(const std::vector<Variable>& list);
    void LookForRefusals();
    KnownValue ValueOf(const Row& row) const;
    bool AllAreKnown() const;
    bool PrintChanges();
    bool PrintTable();
    std::string TimeText() const;
    bool IsOver(std::chrono::milliseconds limit) const;
    std::optional<int> WaitForNextLook();
    /// Looks again and again until @p done holds.
    /// @return nothing when it holds, else the status to end with.
    std::optional<int> Await(const std::function<bool()>& done);
    int EndStatus() const;
    void TellLosses();

    const Options& m_options;
    const Surroundings m_around;
    const Clock::time_point m_start = Clock::now();
    std::vector<std::unique_ptr<Row>> m_rows;
    std::optional<plclink::LinkState> m_printedState;
    std::size_t m_tableLines = 0; ///< That stand on the terminal.
    std::uint64_t m_toldLost = 0; ///< Messages.
    std::atomic<bool> m_isPublishedByAnother{false};
    plclink::MachineLink m_link;                     ///< Its source's thread uses the rows.
    std::optional<plcremote::Publisher> m_publisher; ///< Last: its thread uses the link.
};

} // namespace plcwatch
