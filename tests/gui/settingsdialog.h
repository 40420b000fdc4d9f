#pragma once

#include "expecteddialogs.h"
#include "guitexts.h"
#include "plcmodal.h"
#include "plcvarsettingsdlg.h"
#include "useractions.h"

#include <gtest/gtest.h>
#include <wx/combobox.h>
#include <wx/radiobox.h>
#include <wx/textctrl.h>

#include <cstdint>
#include <functional>
#include <vector>

/// The dialog's controls, by their fixed ids.
struct Controls
{
    explicit Controls(wxDialog& dialog)
        : area(*dynamic_cast<wxComboBox*>(dialog.FindWindow(10005))),
          block(*dynamic_cast<wxComboBox*>(dialog.FindWindow(10006))),
          format(*dynamic_cast<wxRadioBox*>(dialog.FindWindow(10007))),
          size(*dynamic_cast<wxRadioBox*>(dialog.FindWindow(10008))),
          address(*dynamic_cast<wxTextCtrl*>(dialog.FindWindow(10009))),
          ok(*dialog.FindWindow(wxID_OK)), cancel(*dialog.FindWindow(wxID_CANCEL))
    {
    }

    wxComboBox& area;
    wxComboBox& block;
    wxRadioBox& format;
    wxRadioBox& size;
    wxTextCtrl& address;
    wxWindow& ok;
    wxWindow& cancel;
};

/// @return a record with these settings.
PlcDebugVar Record(
    eVarArea area,
    eVarSize size,
    eVarFormat format,
    const wxString& address = "",
    std::int32_t dbNumber = -1);

/// Chooses an item as the operator does, with the arrow keys.
void Choose(wxComboBox& box, int item);

/// Chooses an item as the operator does, by a click.
void Choose(wxRadioBox& box, int item);

void TypeAddress(const Controls& controls, const char* text);

/// The settings dialog on a record, with the operator at it.
class SettingsDialog : public testing::Test
{
protected:
    /// Opens the dialog, lets the operator act, and waits for its end.
    int Show(const std::function<void(const Controls&)>& operate)
    {
        dialogs.Dialog("a title", [operate](wxDialog& dialog) { operate(Controls(dialog)); });
        ExpectMessages();
        PlcVarSettingDlg dialog(nullptr, var, "a title");
        return RunModal(dialog);
    }

    /// Looks at the dialog as it opens, and cancels it.
    void LookAt(const std::function<void(const Controls&)>& look)
    {
        const int result = Show([look](const Controls& controls) {
            look(controls);
            Click(controls.cancel);
        });
        EXPECT_EQ(result, wxID_CANCEL);
    }

    void ExpectMessages()
    {
        for (const char* words : messages) {
            dialogs.Message("T97", words);
        }
    }

    NumberedTexts texts;
    ExpectedDialogs dialogs;
    PlcDebugVar var;
    std::vector<const char*> messages; ///< That checking the address is to show, in order.
};
