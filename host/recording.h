#pragma once

#include "plcdebug_host.h"
#include "result.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The file of recorded requests and answers, in memory: docs/formats.md describes it. No windows.
// Any thread.

namespace plchost {

enum class EventKind : std::uint8_t
{
    Listing = 1, ///< The program debug file; the first event, and no other.
    Request = 2,
    ReadAnswer = 3,
    ProgramStateAnswer = 4
};

/// One event of a recording.
struct RecordedEvent
{
    std::chrono::microseconds time{0}; ///< Since the recording began; never runs backwards.
    EventKind kind = EventKind::Request;
    bool taken = true;   ///< Of an answer: a debugger was open.
    std::string bytes{}; ///< Of the record as many as count; none for a null answer.
};

struct Recording
{
    std::string listing; ///< The program debug file, whole.
    std::vector<RecordedEvent> events;
    std::string remark; ///< A sentence when the end of the file is missing, else empty.
};

/// The longest time that a recording may span.
constexpr std::chrono::hours longestRecording{24 * 365};

/// What a recording begins with.
std::string EncodeRecordingHead();

/// What an event adds to the file.
std::string EncodeEvent(const RecordedEvent& event);

/// An event that is torn at the end of the bytes is left out, with a remark.
/// @return the recording, or what is wrong with the bytes, without the name of the file.
base::Result<Recording> DecodeRecording(std::string_view bytes);

/// @return the recording, or a sentence that names the file.
base::Result<Recording> ReadRecording(const std::string& file);

/// The bytes of a record that its length word covers, 6 to 506; none for a null pointer.
std::string CountingBytes(const CMD_DATA* record);

/// The record of these bytes, filled up with zeros; nothing when there are none.
std::optional<CMD_DATA> RecordOf(std::string_view bytes);

/// The operands that were watched, in the order in which the debugger asked for them first.
std::vector<std::string> WatchedOperands(const Recording& recording);

} // namespace plchost
