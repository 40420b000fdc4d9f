#include "records.h"

#include <algorithm>
#include <cstring>

std::vector<std::uint8_t> BytesOf(const CMD_DATA& record)
{
    std::vector<std::uint8_t> bytes(std::min<std::size_t>(record.length, sizeof record));
    std::memcpy(bytes.data(), &record, bytes.size());
    return bytes;
}

CMD_DATA RecordOfBytes(const std::vector<std::uint8_t>& bytes)
{
    CMD_DATA record{};
    std::memcpy(&record, bytes.data(), bytes.size());
    return record;
}
