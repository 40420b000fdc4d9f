#pragma once

#include "plcdebug_host.h"

#include <cstdint>
#include <vector>

// Records of the host boundary: their bytes, and program states, sound and wild ones.

/// One step of a program-state answer.
struct AnsweredStep
{
    std::uint8_t state;
    std::int32_t value;
};

/// A program-state answer as a host would send it.
/// @param first, last may be another range than that of @p steps.
CMD_DATA
PrgStateAnswerRecord(std::int32_t first, std::int32_t last, const std::vector<AnsweredStep>& steps);

/// @return the first bytes of the record, as many as its length word says (506 at most).
std::vector<std::uint8_t> BytesOf(const CMD_DATA& record);

/// @return the record that begins with these bytes, 506 at most; the rest is 0.
CMD_DATA RecordOfBytes(const std::vector<std::uint8_t>& bytes);
