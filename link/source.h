#pragma once

#include "operand.h"
#include "reading.h"
#include "result.h"
#include "steps.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// What a machine has to offer to be watched: a soft PLC, a recording, a device on the network. No
// windows.

namespace plclink {

/// The operands that a source is to read, each once. Never changes: another list replaces it.
using WatchList = std::vector<plc::Operand>;

/// The value of the operand at this place of a list.
struct PlacedReading
{
    std::size_t place = 0;
    Reading reading;
};

/// Messages of a machine that came to nothing.
struct MessageLosses
{
    std::uint64_t lost = 0;    ///< On the way.
    std::uint64_t dropped = 0; ///< They were not what they should be.
};

/// Takes what a source finds out. Every function is called on the source's thread, one at a time,
/// while the source holds none of its own locks: Watch() and its like may come on other threads
/// meanwhile and wait for this one.
class SourceEvents
{
public:
    SourceEvents() = default;
    virtual ~SourceEvents() = default;
    SourceEvents(const SourceEvents&) = delete;
    SourceEvents(SourceEvents&&) = delete;
    SourceEvents& operator=(const SourceEvents&) = delete;
    SourceEvents& operator=(SourceEvents&&) = delete;

    /// To be called with all that was read in one turn (a cycle, a poll, a message), changed or
    /// not, and without any at least ten times a second while the source does not wait for its
    /// machine: what could not be delivered before is delivered then.
    /// @param list that the places belong to. Readings under a former list count as far as their
    ///        operands are still watched.
    /// @param readings of each place one at most.
    virtual void OnReadings(const WatchList& list, const std::vector<PlacedReading>& readings) = 0;

    /// The machine does not let this operand be read, although Check() allowed it. To be called
    /// once, until it has been read after all.
    /// @param reason a sentence.
    virtual void OnUnreadable(const plc::Operand& operand, const std::string& reason) = 0;

    /// To be called when the state has changed.
    virtual void OnState(const LinkState& state) = 0;

    /// The states of the steps that are watched.
    /// @param states one for each step.
    /// @return false when nobody could take them; they are to be offered again in the next turn.
    virtual bool
    OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>& states) = 0;
};

/// Takes the end of a write: done and confirmed by reading back, or why not. Runs once, on any
/// thread, perhaps before Write() returns; a failure when the source ends before.
using WriteDone = std::function<void(const base::Result<void>& done)>;

/// A machine. Its functions never wait for it: they take what is wanted and return. They may be
/// called on any thread, but not inside a call of SourceEvents.
class Source
{
public:
    Source() = default;
    Source(const Source&) = delete;
    Source(Source&&) = delete;
    Source& operator=(const Source&) = delete;
    Source& operator=(Source&&) = delete;
    /// Ends the source's thread; no event comes any more when it returns.
    virtual ~Source() = default;

    /// Begins. To be called once; no event comes before.
    /// @param events outlives the source.
    virtual void Start(SourceEvents& events) = 0;

    /// @return why this operand can never be read, as in 'this PLC has no operand "MB512"'; done
    ///         when it can, as far as is known without asking the machine. Also before Start().
    virtual base::Result<void> Check(const plc::Operand& operand) const = 0;

    /// Reads these operands from now on, and no others; all have passed Check(). Those that are new
    /// are read as soon as possible.
    virtual void Watch(std::shared_ptr<const WatchList> list) = 0;

    /// Writes the lowest bits of @p value that fit the operand, once or not at all: never later
    /// than it can be confirmed, never repeated. Writes are done in their order.
    /// @param done not null.
    virtual void Write(const plc::Operand& operand, std::uint32_t value, WriteDone done) = 0;

    /// Records these steps of the program from now on, instead of the ones before, and tells their
    /// states. A machine that has none to tell says nothing.
    virtual void WatchSteps(std::optional<plc::StepRange>) {}

    /// How far apart two readings of an operand are while all is well; zero when that is not known.
    virtual std::chrono::milliseconds TurnTime() const { return {}; }

    /// What has gone wrong with single messages so far. [any-thread]
    virtual MessageLosses Losses() const { return {}; }

    /// Whether every reading is worth telling, as in a recording; else changes are, and from time
    /// to time that nothing has changed.
    virtual bool TellsEveryReading() const { return false; }
};

} // namespace plclink
