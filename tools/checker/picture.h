#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// Pictures of windows, compared: what changed, where, and whether two places look alike. Any
// thread.

namespace plccheck {

/// In pixels, from the upper left corner.
struct Box
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// RGB, one byte each, row by row without gaps.
struct Picture
{
    static constexpr int channels = 3;

    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    /// The pixels of a part of one row.
    std::string_view Row(int y, int x, int count) const;
};

bool operator==(const Picture& a, const Picture& b);
bool operator!=(const Picture& a, const Picture& b);

/// @return the smallest box around everything that differs; none when nothing does, or when the
///         pictures are not of one size.
std::optional<Box> Difference(const Picture& a, const Picture& b);

/// Which pixels of a part differ, row by row: the shape of what changed, whatever its colours.
/// @param box within both pictures.
std::vector<bool> ChangedPixels(const Picture& a, const Picture& b, const Box& box);

} // namespace plccheck
