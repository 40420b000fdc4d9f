#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// What the fuzz targets share. A target feeds arbitrary bytes to one reader and holds the result to
// what the reader promises. Each has its seeds, and every input that once found a defect, in
// corpus/<target>/.

/// The target: one input.
/// @return 0, as the fuzzer wants it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the process, and with it the run, with a message when @p holds is false.
void Require(bool holds, const char* promise);

/// Writes the input to a file, in place of the one before.
/// @return the file's path.
std::string FileOf(std::string_view input);

std::string_view Text(const std::uint8_t* data, std::size_t size);
