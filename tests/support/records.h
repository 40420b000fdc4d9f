#pragma once

#include "plcdebug_host.h"

#include <cstdint>
#include <vector>

// Records of the host boundary as bytes, and answers that no sound host gives.

/// @return the first bytes of the record, as many as its length word says (506 at most).
std::vector<std::uint8_t> BytesOf(const CMD_DATA& record);

/// @return the record that begins with these bytes, 506 at most; the rest is 0.
CMD_DATA RecordOfBytes(const std::vector<std::uint8_t>& bytes);
