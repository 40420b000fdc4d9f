#include "plcdebugvar.h"
#include "plcmodal.h"

bool PlcDebugVar::CheckVarAddress(const wxString& text, bool showErrors) const
{
    const AddressVerdict verdict = JudgeAddress(*this, text);
    if (showErrors && verdict.message) {
        ShowMessage(TextId::AddressCaption, RefusalText(verdict));
    }
    return verdict.valid;
}
