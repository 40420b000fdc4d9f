#include "settingsdialog.h"

#include "waitfor.h"

PlcDebugVar Record(
    eVarArea area, eVarSize size, eVarFormat format, const wxString& address, std::int32_t dbNumber)
{
    PlcDebugVar var;
    var.area = area;
    var.size = size;
    var.format = format;
    var.address = address;
    var.dbNumber = dbNumber;
    return var;
}

void Choose(wxComboBox& box, int item)
{
    ASSERT_TRUE(Focus(box));
    while (box.GetSelection() != item) {
        const int before = box.GetSelection();
        PressKey(before < item ? WXK_DOWN : WXK_UP);
        ASSERT_TRUE(WaitFor("combo box moved", [&] { return box.GetSelection() != before; }));
    }
    RunPending();
}

void Choose(wxRadioBox& box, int item)
{
    ClickRadioItem(box, item);
    ASSERT_TRUE(WaitFor("radio item chosen", [&] { return box.GetSelection() == item; }));
    RunPending();
}

void TypeAddress(const Controls& controls, const char* text)
{
    controls.address.Clear();
    ASSERT_TRUE(Focus(controls.address));
    Type(text);
    ASSERT_TRUE(WaitFor("address typed", [&] { return controls.address.GetValue() == text; }));
}
