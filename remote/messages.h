#pragma once

#include "operand.h"
#include "reading.h"
#include "result.h"
#include "steps.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// What a machine and its viewers say to each other over a broker, each message a JSON text; the
// document docs/remote.md says the same field by field. Values. Any thread.

namespace plcremote {

using std::chrono::milliseconds;

/// Each message says it; one of another version is not read.
constexpr int formatVersion = 1;

constexpr std::size_t longestMessage = 1U << 20U; ///< Bytes.
constexpr std::size_t longestListing = 8U << 20U; ///< Bytes.
constexpr std::size_t mostOperands = 500;         ///< Of a machine, of all viewers together.
constexpr std::size_t mostSteps = 1000;           ///< Of a range.
constexpr std::size_t mostViewers = 32;           ///< Of a machine.
constexpr milliseconds lease{10000};              ///< Of what a viewer asks for.
constexpr milliseconds renewal{3000};             ///< A viewer asks again after this time.
constexpr milliseconds writePatience{2000};       ///< A write is done within this time or failed.

/// A value that the machine has; older readings than this are told with their age.
constexpr milliseconds youngAge{100};

/// What an operand of this width can hold at most.
std::uint32_t HighestValue(plc::Width width);

/// Topic `state`, retained; also the machine's last will.
struct StateMessage
{
    std::string session{}; ///< Of this run of the publishing program: sixteen hexadecimal digits.
    plclink::LinkState link{};           ///< To the controller behind it.
    std::string version{};               ///< Of the publishing program.
    milliseconds turn{};                 ///< See plclink::Source::TurnTime().
    bool hasListing = false;             ///< There is a topic `listing`.
    std::vector<std::string> writable{}; ///< Lines of the write list.
};

/// The value of one operand, or why there is none.
struct RemoteValue
{
    plc::Operand operand{};
    std::optional<std::uint32_t> value{}; ///< As in plclink::Reading.
    std::string refusal{};                ///< Why there is none to come; else empty.
};

/// An operand whose newest reading is not young.
struct RemoteAge
{
    plc::Operand operand{};
    milliseconds age{};
};

/// Topic `values`.
struct ValuesMessage
{
    std::string session{};
    std::uint64_t sequence = 0; ///< One more with each message of a session.
    milliseconds running{};     ///< Time that the machine's program runs, when it was sent.
    bool isWhole = false;       ///< All that is watched, else what has changed.
    std::vector<RemoteValue> values{};
    std::vector<RemoteAge> ages{}; ///< Of all that is watched, changed or not, and not young.
};

/// Topic `watch/USER/WINDOW`: instead of what this window has asked for before. None: it is gone.
struct WatchMessage
{
    std::vector<plc::Operand> operands{};
};

/// Topic `steps/USER/WINDOW`.
struct StepsMessage
{
    std::optional<plc::StepRange> range{}; ///< None: they are wanted no longer.
};

/// Topic `write/USER/WINDOW`.
struct WriteMessage
{
    std::string session{}; ///< Of the machine.
    std::string id{};      ///< Of this write: sixteen hexadecimal digits.
    plc::Operand operand{};
    std::uint32_t value = 0;
    milliseconds running{}; ///< The machine's running time at least, when it was sent.
};

/// Topic `answer/USER/WINDOW`: how a write ended.
struct WrittenMessage
{
    std::string id{};
    std::optional<std::uint32_t> before{};
    std::optional<std::uint32_t> after{}; ///< Read back.
    std::string refusal{};                ///< Empty: done and read back.
};

/// Topic `answer/USER/WINDOW`.
struct StepStatesMessage
{
    plc::StepRange range{};
    std::vector<plc::StepState> states{}; ///< One for each step.
};

/// Topic `answer/USER/WINDOW`: what this window does not get.
struct RefusalMessage
{
    enum class Of : std::uint8_t
    {
        Watch,
        Steps
    };
    Of of = Of::Watch;
    std::string reason{}; ///< A sentence; empty: what was refused before is not refused any more.
};

using AnswerMessage = std::variant<WrittenMessage, StepStatesMessage, RefusalMessage>;

std::string Text(const StateMessage& message);
std::string Text(const ValuesMessage& message);
std::string Text(const WatchMessage& message);
std::string Text(const StepsMessage& message);
std::string Text(const WriteMessage& message);
std::string Text(const AnswerMessage& message);

// Each gives the message, or what is wrong with the text: not JSON, too large, another version,
// a wrong type, an unknown operand, a number that does not fit.

base::Result<StateMessage> ReadState(std::string_view text);
base::Result<ValuesMessage> ReadValues(std::string_view text);
base::Result<WatchMessage> ReadWatch(std::string_view text);
base::Result<StepsMessage> ReadSteps(std::string_view text);
base::Result<WriteMessage> ReadWrite(std::string_view text);
base::Result<AnswerMessage> ReadAnswer(std::string_view text);

} // namespace plcremote
