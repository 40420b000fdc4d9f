#include "fuzz.h"
#include "plcvarpanel_file.h"

// A watch list: what a line with a plain address says survives being saved and read again.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto lines = ReadListFile(wxString(FileOf(Text(data, size))));
    Require(lines.has_value(), "a file that can be opened is read");

    for (const wxString& text : *lines) {
        std::optional<ListLine> line = ParseListLine(text);
        if (!line || !line->valid || !JudgeAddress(line->var, line->address).valid) {
            continue;
        }
        // Behind the point of a bit anything may stand that has a digit in it, in a file too.
        if (line->address.find_first_not_of("0123456789.") != wxString::npos) {
            continue;
        }
        line->var.address = line->address;
        const auto again = ParseListLine(ListFileText({line->var}).BeforeFirst('\n'));
        Require(again.has_value() && again->valid, "a saved line is valid");
        Require(again->address == line->address, "a saved address is read again");
        PlcDebugVar same = again->var;
        same.address = again->address;
        const bool hasOneSize = same.area == eAreaTimer || same.area == eAreaCounter;
        same.size = hasOneSize ? line->var.size : same.size; // a file may give them another
        Require(same == line->var, "a saved variable is read again");
        Require(!same.GetVarValueShow().empty(), "a value has a text");
    }
    return 0;
}
