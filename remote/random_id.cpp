#include "random_id.h"

#include <array>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <random>

namespace plcremote {

std::string RandomId()
{
    constexpr std::size_t digits = 16;
    constexpr unsigned half = 32;
    std::random_device device;
    const std::uint64_t number = std::uint64_t{device()} << half | device();
    std::array<char, digits + 1> text{};
    std::snprintf(text.data(), text.size(), "%016" PRIx64, number);
    return text.data();
}

} // namespace plcremote
