#include "picture.h"

#include <algorithm>

namespace plccheck {

std::string_view Picture::Row(int y, int x, int count) const
{
    const auto at = static_cast<std::size_t>(channels) * static_cast<std::size_t>(y * width + x);
    return {
        reinterpret_cast<const char*>(pixels.data() + at),
        static_cast<std::size_t>(channels) * static_cast<std::size_t>(count)};
}

bool operator==(const Picture& a, const Picture& b)
{
    return a.width == b.width && a.height == b.height && a.pixels == b.pixels;
}

bool operator!=(const Picture& a, const Picture& b)
{
    return !(a == b);
}

std::optional<Box> Difference(const Picture& a, const Picture& b)
{
    if (a.width != b.width || a.height != b.height || a == b) {
        return std::nullopt;
    }
    int left = a.width;
    int right = 0;
    int top = a.height;
    int bottom = 0;
    for (int y = 0; y < a.height; ++y) {
        const auto rowA = a.Row(y, 0, a.width);
        const auto rowB = b.Row(y, 0, b.width);
        const auto* const first = std::mismatch(rowA.begin(), rowA.end(), rowB.begin()).first;
        if (first == rowA.end()) {
            continue;
        }
        const auto last = std::mismatch(rowA.rbegin(), rowA.rend(), rowB.rbegin()).first;
        left = std::min(left, static_cast<int>(first - rowA.data()) / Picture::channels);
        right = std::max(right, static_cast<int>(rowA.rend() - last - 1) / Picture::channels + 1);
        top = std::min(top, y);
        bottom = y + 1;
    }
    return Box{left, top, right - left, bottom - top};
}

std::vector<bool> ChangedPixels(const Picture& a, const Picture& b, const Box& box)
{
    std::vector<bool> changed;
    for (int y = box.y; y < box.y + box.height; ++y) {
        for (int x = box.x; x < box.x + box.width; ++x) {
            changed.push_back(a.Row(y, x, 1) != b.Row(y, x, 1));
        }
    }
    return changed;
}

} // namespace plccheck
