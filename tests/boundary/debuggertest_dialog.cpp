#include "debuggertest.h"
#include "widgets.h"

#include <gtk/gtk.h>
#include <wx/filedlg.h>
#include <wx/radiobox.h>
#include <wx/textctrl.h>

#include <X11/keysym.h>
#include <filesystem>
#include <memory>

// The operator at a dialog.

namespace {

GtkResponseType ResponseFor(int button)
{
    switch (button) {
    case wxID_OK:
        return GTK_RESPONSE_OK;
    case wxID_YES:
        return GTK_RESPONSE_YES;
    case wxID_NO:
        return GTK_RESPONSE_NO;
    default:
        return GTK_RESPONSE_CANCEL;
    }
}

GtkWidget* ButtonOf(wxDialog& dialog, int button)
{
    if (GTK_IS_DIALOG(dialog.GetHandle())) {
        const bool confirms = dynamic_cast<wxFileDialog*>(&dialog) != nullptr && button == wxID_OK;
        return gtk_dialog_get_widget_for_response(
            GTK_DIALOG(dialog.GetHandle()), confirms ? GTK_RESPONSE_ACCEPT : ResponseFor(button));
    }
    return wxWindow::FindWindowById(button, &dialog)->GetHandle();
}

} // namespace

testing::AssertionResult DebuggerTest::DialogOpens(const std::string& what)
{
    const auto isOpen = [&] {
        wxDialog* dialog = watch.Innermost();
        return dialog != nullptr && watch.Expect(what) && IsOnScreen(dialog->GetHandle());
    };
    const testing::AssertionResult opened = Await(what, isOpen);
    return opened ? hands.Activate(OnGui([this] { return watch.Innermost()->GetHandle(); }))
                  : opened;
}

void DebuggerTest::ClickInDialog(int button)
{
    const wxDialog* dialog = OnGui([this] { return watch.Innermost(); });
    ClickButton(button);
    ASSERT_TRUE(AwaitDialogClosed(dialog));
}

void DebuggerTest::ClickButton(int button)
{
    const auto isSensitive = [&] {
        return gtk_widget_is_sensitive(ButtonOf(*watch.Innermost(), button)) != FALSE;
    };
    ASSERT_TRUE(Await("the button ready", isSensitive));
    hands.Click(OnGui([&] { return MiddleOf(ButtonOf(*watch.Innermost(), button)); }));
}

testing::AssertionResult DebuggerTest::AnswerDialog(const std::string& what, int button)
{
    const testing::AssertionResult opened = DialogOpens(what);
    if (!opened) {
        return opened;
    }
    const wxDialog* dialog = OnGui([this] { return watch.Innermost(); });
    ClickButton(button);
    return AwaitDialogClosed(dialog);
}

testing::AssertionResult DebuggerTest::EnterFile(const std::string& path)
{
    const auto isChosen = [&] {
        auto* chooser = GTK_FILE_CHOOSER(watch.Innermost()->GetHandle());
        const std::unique_ptr<char, decltype(&g_free)> chosen(
            gtk_file_chooser_get_filename(chooser), g_free);
        return chosen != nullptr && path == chosen.get();
    };
    OnGui([&] {
        auto* chooser = GTK_FILE_CHOOSER(watch.Innermost()->GetHandle());
        if (gtk_file_chooser_get_action(chooser) == GTK_FILE_CHOOSER_ACTION_SAVE) {
            const std::filesystem::path file(path);
            gtk_file_chooser_set_current_folder(chooser, file.parent_path().c_str());
            gtk_file_chooser_set_current_name(chooser, file.filename().c_str());
        } else {
            gtk_file_chooser_set_filename(chooser, path.c_str());
        }
    });
    const testing::AssertionResult chosen = Await("the file chosen", isChosen);
    if (chosen) {
        ClickButton(wxID_OK);
    }
    return chosen;
}

testing::AssertionResult DebuggerTest::ChooseFile(const std::string& path)
{
    const wxDialog* dialog = OnGui([this] { return watch.Innermost(); });
    const testing::AssertionResult entered = EnterFile(path);
    return entered ? AwaitDialogClosed(dialog) : entered;
}

testing::AssertionResult DebuggerTest::FileDialogAsks()
{
    return Await("a question of the file dialog", [this] {
        return DialogOver(watch.Innermost()->GetHandle()) != nullptr;
    });
}

void DebuggerTest::FocusCombo(ControlId combo)
{
    const auto control = [this, combo] {
        return wxWindow::FindWindowById(combo, watch.Innermost());
    };
    OnGui([&] { control()->SetFocus(); });
    ASSERT_TRUE(Await("the combo box focused", [&] { return control()->HasFocus(); }));
}

void DebuggerTest::ChooseInCombo(ControlId combo, int item)
{
    const auto control = [this, combo] {
        return static_cast<wxComboBox*>(wxWindow::FindWindowById(combo, watch.Innermost()));
    };
    FocusCombo(combo);
    const int before = OnGui([&] { return control()->GetSelection(); });
    for (int at = before; at != item; at += at < item ? 1 : -1) {
        hands.Press(at < item ? XK_Down : XK_Up);
        const int next = at < item ? at + 1 : at - 1;
        ASSERT_TRUE(Await("the next item", [&] { return control()->GetSelection() == next; }));
    }
}

void DebuggerTest::ChooseInBox(ControlId box, int item)
{
    const auto control = [this, box] {
        return static_cast<wxRadioBox*>(wxWindow::FindWindowById(box, watch.Innermost()));
    };
    hands.Click(OnGui([&] { return MiddleOf(RadioButtonOf(*control(), item)); }));
    ASSERT_TRUE(Await("the item chosen", [&] { return control()->GetSelection() == item; }));
}

void DebuggerTest::TypeAddress(const std::string& address)
{
    const auto control = [this] {
        return static_cast<wxTextCtrl*>(wxWindow::FindWindowById(addressField, watch.Innermost()));
    };
    ASSERT_TRUE(hands.Activate(OnGui([this] { return watch.Innermost()->GetHandle(); })));
    // Not by a click: the window manager may hold one back until after the first keys.
    OnGui([&] { control()->SetFocus(); });
    ASSERT_TRUE(Await("the field focused", [&] { return control()->HasFocus(); }));
    hands.Press(XK_a, XK_Control_L);
    hands.Press(XK_Delete);
    hands.Type(address);
    ASSERT_TRUE(Await("the address typed", [&] { return control()->GetValue() == address; }));
}

testing::AssertionResult DebuggerTest::AwaitDialogClosed(const wxDialog* dialog)
{
    return Await("the dialog closed", [&] { return watch.Innermost() != dialog; });
}
