#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Program debug files.

/// One block of a program debug file.
struct DebugFileBlock
{
    std::string name;                    ///< At most 48 bytes.
    std::uint16_t firstStep = 0;         ///< As the file is to have it.
    std::vector<std::string> lines = {}; ///< Without line ends.
    /// Where the file is to state another number of lines than there are.
    std::optional<std::uint16_t> lineCount = std::nullopt;
};

/// @return the bytes of a program debug file: texts, then the index.
/// @param lineEnd behind every line.
std::string DebugFile(const std::vector<DebugFileBlock>& blocks, const std::string& lineEnd = "\n");

/// @return the bytes up to the index, which is to stand right behind them.
std::string DebugFileHead(std::int32_t indexOffset);

/// @return four bytes, the low one first.
std::string LittleEndian(std::int32_t value);

/// @return @p count lines "<prefix> 0" and so on, all executable.
std::vector<std::string> ExecutableLines(int count, const std::string& prefix = "U E");
