#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// The program debug file: blocks and listing lines out. No windows. Any thread.
//
// Offsets are bytes from the start of the file, numbers are little-endian:
//    8    int32 T, the place of the block index
//    T    int32 N, the number of blocks
//    T+4  N block records of 56 bytes
// A block's lines stand at its fileOffset, each ended by LF or CR LF.

constexpr std::size_t blockNameSize = 48;

/// One program block, as it stands in the file.
struct DBG_BAUSTEIN_ENTRY
{
    char name[blockNameSize]; ///< 0: in the locale's encoding; ends with a zero or the field.
    std::uint16_t firstStep;  ///< 48: step number of the first executable line
    std::uint16_t lineCount;  ///< 50: listing lines of the block
    std::uint32_t fileOffset; ///< 52: place of the first listing line
};

static_assert(
    sizeof(DBG_BAUSTEIN_ENTRY) == blockNameSize + 2 * sizeof(std::uint16_t) + sizeof(std::uint32_t),
    "a block record has 56 bytes");
static_assert(std::is_trivially_copyable_v<DBG_BAUSTEIN_ENTRY>, "read as a raw image");

constexpr int noStep = -1;               ///< The step of a line that is not executable.
constexpr const wchar_t* noValue = L"-"; ///< The value of a line that has none.

/// One listing line of the block on show; state and value as the grid shows them.
struct DB_BAUSTEIN
{
    std::wstring state; ///< "?" not known yet, "1" or "0" logic result, "-" not executable.
    std::wstring value; ///< Decimal, or noValue.
    std::wstring text;  ///< The whole line without any CR and LF.
    std::int32_t step;  ///< Step number, or noStep.
};

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

using PrgFile = std::unique_ptr<std::FILE, CloseFile>;

/// @param path in the locale's encoding.
/// @return null when the file cannot be opened for reading, or is no regular file.
PrgFile OpenPrgFile(const std::string& path);

/// Reads the block index up to a short read; a damaged number of blocks costs no memory.
/// @return the blocks in file order; none when there is no index.
std::vector<DBG_BAUSTEIN_ENTRY> ReadBlockIndex(std::FILE* file);

/// Reads the lines of a block, always lineCount of them: where the file has fewer, its last line
/// repeats. A line of more than 255 bytes comes as several.
std::vector<DB_BAUSTEIN> ReadBlockLines(std::FILE* file, const DBG_BAUSTEIN_ENTRY& block);

/// @return false when the line's part after its first colon, or the whole of a line without a
///         colon, contains NOP, BLD, NETWORK or TITLE.
bool IsExecutable(std::wstring_view line);

/// Converts from the locale's encoding; bytes that do not convert are taken as ISO 8859-1.
/// @param size the text ends at its first zero byte or after @p size bytes.
std::wstring FromLocalText(const char* text, std::size_t size);

/// As FromLocalText() for the path of a file, which is in UTF-8 when the host has set no locale.
std::wstring FromLocalPath(const char* path, std::size_t size);
