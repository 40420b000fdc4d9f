#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A block found by the beginning of its name, as the operator types it. No windows. Any thread.

constexpr int typingPauseMs = 1000; ///< What is typed later than this begins a name anew.

/// The beginning of a block's name that is being typed; large and small letters are alike.
class TypedName
{
public:
    /// Takes the next letter or digit.
    /// @param timeMs when it was typed; may wrap.
    /// @param names of all blocks.
    /// @param selected position of the selected block, -1 without one.
    /// @return the first block that has the beginning; for the same single letter again the next
    ///         block behind the selected one that begins with it; nothing when no block has it.
    std::optional<std::size_t>
    Add(wchar_t letter, std::uint32_t timeMs, const std::vector<std::wstring>& names, int selected);

private:
    std::wstring m_beginning;
    std::uint32_t m_lastMs = 0;
};
