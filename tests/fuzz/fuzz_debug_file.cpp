#include "fuzz.h"
#include "plcprgpanel_state.h"

#include <algorithm>

// A program debug file: every block has as many lines as it says, and a step of each executable
// line that the index finds again.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const PrgFile file = OpenPrgFile(FileOf(Text(data, size)));
    const std::vector<DBG_BAUSTEIN_ENTRY> blocks = ReadBlockIndex(file.get());

    constexpr std::size_t enough = 3; // a block may have 65,535 lines
    for (std::size_t i = 0; i < std::min(blocks.size(), enough); ++i) {
        const std::vector<DB_BAUSTEIN> lines = ReadBlockLines(file.get(), blocks[i]);
        Require(lines.size() == blocks[i].lineCount, "a block has its number of lines");
        StepIndex index;
        index.Build(lines);
        for (std::size_t line = 0; line < lines.size(); ++line) {
            Require(
                lines[line].step == noStep || index.LineOf(lines[line].step) == line,
                "the index finds every step");
            Require(
                lines[line].text.find_first_of(L"\r\n") == std::wstring::npos,
                "a line's text has no line end");
        }
    }
    return 0;
}
