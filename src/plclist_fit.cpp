#include "plclist_fit.h"

#include <algorithm>

namespace {

constexpr int lastColumnMargin = 8;

} // namespace

int LastColumnWidth(int virtualWidth, int firstWidth, int secondWidth)
{
    return std::max(0, virtualWidth - firstWidth - secondWidth) - lastColumnMargin;
}

bool IsColumnWidth(int width)
{
    return width > 0;
}
