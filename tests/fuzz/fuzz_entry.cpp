#include "fuzz.h"
#include "plcdebugvar.h"

// What the operator types: addresses and values in every area, size and format. A value that is
// taken is shown as a text that is taken again; other than in floating point for the same value.
// Only a negative byte or word in binary is shown with a leading one that counts as too large.

namespace {

void CheckValue(PlcDebugVar& var, const wxString& typed)
{
    wxString error;
    if (!var.SetVarValue(typed, error)) {
        return;
    }
    const std::int32_t value = var.value;
    if (value < 0 && var.format == eFormatBinary && var.size < eSizeDouble) {
        return;
    }
    const wxString shown = var.GetVarValueShow();
    Require(var.SetVarValue(shown, error), "a value that is shown can be typed");
    Require(
        var.value == value || var.format == eFormatFloat,
        "a value that is shown is the same typed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const wxString typed = wxString::FromUTF8(reinterpret_cast<const char*>(data), size);
    PlcDebugVar var;
    for (var.area = eAreaOutput; var.area <= eAreaCounter; ++var.area) {
        var.dbNumber = var.area == eAreaDb ? varDBs[0].number : -1;
        for (var.size = eSizeBit; var.size <= eSizeDouble; ++var.size) {
            if (JudgeAddress(var, typed).valid) {
                var.address = typed;
                Require(
                    !var.GetVarName(true).empty(), "an operand with a valid address has a name");
                const CMD_DATA request = var.GetVarCMD(eReadVar, 0);
                Require(request.length <= sizeof request, "a request fits its record");
            }
            for (var.format = eFormatDecimal; var.format <= eFormatFloat; ++var.format) {
                CheckValue(var, typed);
            }
        }
    }
    return 0;
}
