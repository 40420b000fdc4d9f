#include "recording.h"

#include "file.h"
#include "record.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <set>

namespace plchost {

namespace {

using std::chrono::microseconds;

constexpr std::string_view magic = "PLCDBREC";
constexpr std::uint32_t formatVersion = 1;
constexpr std::size_t headSize = 12;      // magic, version (4)
constexpr std::size_t eventHeadSize = 16; // size (4), kind (1), taken (1), 0 (2), time (8)
constexpr int bitsPerByte = 8;

void Put(std::string& bytes, std::uint64_t number, std::size_t width)
{
    for (std::size_t i = 0; i < width; ++i) {
        bytes += static_cast<char>(number >> (bitsPerByte * i));
    }
}

/// Takes numbers and texts off the front of bytes. Never asked for more than there is.
class Reader
{
public:
    explicit Reader(std::string_view bytes) : m_rest(bytes), m_size(bytes.size()) {}

    std::size_t Offset() const { return m_size - m_rest.size(); }

    std::size_t Left() const { return m_rest.size(); }

    std::string_view Text(std::size_t size)
    {
        const std::string_view text = m_rest.substr(0, size);
        m_rest.remove_prefix(size);
        return text;
    }

    std::uint64_t Number(std::size_t width)
    {
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < width; ++i) {
            number |= std::uint64_t{static_cast<unsigned char>(m_rest[i])} << (bitsPerByte * i);
        }
        m_rest.remove_prefix(width);
        return number;
    }

private:
    std::string_view m_rest;
    const std::size_t m_size;
};

struct EventHead
{
    std::uint64_t size;
    std::uint64_t kind;
    std::uint64_t taken;
    std::uint64_t unused;
    std::uint64_t time;
};

EventHead HeadOf(Reader& reader)
{
    EventHead head{};
    head.size = reader.Number(4);
    head.kind = reader.Number(1);
    head.taken = reader.Number(1);
    head.unused = reader.Number(2);
    head.time = reader.Number(sizeof head.time);
    return head;
}

bool IsSizeOfRecord(std::uint64_t size)
{
    return size >= PLC_CMD_HEADER_SIZE && size <= PLC_CMD_SIZE;
}

bool IsSizeOf(EventKind kind, std::uint64_t size)
{
    switch (kind) {
    case EventKind::Listing:
        return size <= std::numeric_limits<std::int32_t>::max();
    case EventKind::Request:
        return IsSizeOfRecord(size);
    case EventKind::ReadAnswer:
    case EventKind::ProgramStateAnswer:
        return size == 0 || IsSizeOfRecord(size);
    }
    return false; // no kind of version 1
}

/// @param isFirst whether it is the first event, which has to be the listing.
bool IsSound(const EventHead& head, bool isFirst, microseconds before)
{
    const auto kind = static_cast<EventKind>(head.kind);
    return (kind == EventKind::Listing) == isFirst && IsSizeOf(kind, head.size) &&
           head.taken <= 1 && head.unused == 0 &&
           head.time <= static_cast<std::uint64_t>(microseconds(longestRecording).count()) &&
           microseconds(head.time) >= before;
}

std::string TornRemark(std::size_t offset)
{
    return "the recording is torn at byte " + std::to_string(offset) +
           "; everything before it is played";
}

base::Result<void> CheckHead(std::string_view bytes)
{
    if (bytes.substr(0, magic.size()) != magic || bytes.size() < headSize) {
        return base::Failure{"is no recording (plchost --record FILE makes one)"};
    }
    Reader reader(bytes.substr(magic.size()));
    const std::uint64_t version = reader.Number(4);
    if (version == formatVersion) {
        return {};
    }
    return base::Failure{
        "has format version " + std::to_string(version) + ", and this plchost plays version " +
        std::to_string(formatVersion) + " (take the plchost that has recorded it)"};
}

} // namespace

std::string EncodeRecordingHead()
{
    std::string bytes(magic);
    Put(bytes, formatVersion, 4);
    return bytes;
}

std::string EncodeEvent(const RecordedEvent& event)
{
    std::string bytes;
    Put(bytes, event.bytes.size(), 4);
    Put(bytes, static_cast<std::uint8_t>(event.kind), 1);
    Put(bytes, event.taken ? 1 : 0, 1);
    Put(bytes, 0, 2);
    Put(bytes, static_cast<std::uint64_t>(event.time.count()), sizeof(std::uint64_t));
    return bytes + event.bytes;
}

base::Result<Recording> DecodeRecording(std::string_view bytes)
{
    if (const auto head = CheckHead(bytes); !head) {
        return base::Failure{head.Message()};
    }
    Recording recording;
    bool hasListing = false;
    microseconds before{0};
    Reader reader(bytes);
    reader.Text(headSize);
    while (reader.Left() > 0) {
        const std::size_t offset = reader.Offset();
        if (reader.Left() < eventHeadSize) {
            recording.remark = TornRemark(offset);
            break;
        }
        const EventHead head = HeadOf(reader);
        if (!IsSound(head, !hasListing, before)) {
            return base::Failure{
                "is damaged at byte " + std::to_string(offset) + " (copy it again)"};
        }
        if (reader.Left() < head.size) {
            recording.remark = TornRemark(offset);
            break;
        }
        const std::string_view data = reader.Text(static_cast<std::size_t>(head.size));
        before = microseconds(head.time);
        if (hasListing) {
            recording.events.push_back(
                {before, static_cast<EventKind>(head.kind), head.taken != 0, std::string(data)});
        } else {
            recording.listing = data;
        }
        hasListing = true;
    }
    if (!hasListing) {
        return base::Failure{"is torn before its first record; there is nothing to play"};
    }
    return recording;
}

base::Result<Recording> ReadRecording(const std::string& file)
{
    const auto bytes = base::ReadFile(file);
    if (!bytes) {
        return base::Failure{bytes.Message()};
    }
    auto decoded = DecodeRecording(*bytes);
    if (!decoded) {
        return base::Failure{"\"" + file + "\" " + decoded.Message()};
    }
    return decoded;
}

std::string CountingBytes(const CMD_DATA* record)
{
    if (record == nullptr) {
        return "";
    }
    const std::size_t size = std::clamp<std::size_t>(
        record->length, std::size_t{PLC_CMD_HEADER_SIZE}, std::size_t{PLC_CMD_SIZE});
    return {reinterpret_cast<const char*>(record), size};
}

std::optional<CMD_DATA> RecordOf(std::string_view bytes)
{
    if (bytes.empty()) {
        return std::nullopt;
    }
    CMD_DATA record{};
    std::memcpy(&record, bytes.data(), std::min(bytes.size(), sizeof record));
    return record;
}

std::vector<std::string> WatchedOperands(const Recording& recording)
{
    std::vector<std::string> operands;
    std::set<std::string> seen;
    for (const RecordedEvent& event : recording.events) {
        const auto request = RecordOf(event.bytes);
        if (event.kind != EventKind::Request || request->command != PLC_CMD_READ_VAR) {
            continue;
        }
        const std::string operand = OperandOf(*request);
        if (seen.insert(operand).second) {
            operands.push_back(operand);
        }
    }
    return operands;
}

} // namespace plchost
