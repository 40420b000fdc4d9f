#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Another client of a device, which shares nothing with the link.

/// mbpoll's names of the tables.
constexpr const char* coils = "0";
constexpr const char* discretes = "1";
constexpr const char* inputs = "3";
constexpr const char* holding = "4";

/// @return what mbpoll says when it writes a value at a protocol address.
std::string MbpollWrite(const std::string& port, const char* table, int address, int value);

/// @return the registers or bits from a protocol address on; fewer when mbpoll cannot read them.
std::vector<std::uint16_t>
MbpollRead(const std::string& port, const char* table, int address, int count);
