#pragma once

#include "debuggerwindow.h"
#include "hostloop.h"
#include "loader.h"
#include "operator.h"
#include "recordinghost.h"
#include "tempdir.h"
#include "watch.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

/// A machine with the debugger: the files, the host's side of the boundary, the operator. Nothing
/// is open at first. Whatever a test leaves open is closed after it; an unexpected dialog, an
/// assert of the toolkit, a critical, a callback on a foreign thread or an ended host loop fails
/// it. Test thread.
class DebuggerTest : public testing::Test
{
protected:
    DebuggerTest();
    void TearDown() override;

    // The machine's files

    /// Sets a key of section [Settings] in the configuration file, which lies in `files`.
    void Configure(const std::string& key, const std::string& value);

    /// Gives New, Open, Close, Save, Save as, Exit and Info a letter.
    void UseLetters();

    /// Writes a variable list and makes it the last one. @return its path.
    std::string UseList(const Words& lines);

    /// Writes the program debug file. @param blocks the lines of each.
    void UseProgram(const std::vector<Words>& blocks);

    // The host

    /// Calls the export from the GUI thread. @return its result; what it throws is thrown.
    int Create();
    void Destroy();

    /// Creates the debugger and waits until its window is active.
    testing::AssertionResult Open();

    /// Creates the debugger where a message holds the creation up; WindowOpens() follows.
    void OpenBehindMessages();

    /// Waits until the window is there and active.
    testing::AssertionResult WindowOpens();

    /// Answers from the test's own thread. @return what the export says.
    int Answer(std::uint16_t key, std::int32_t value) const;
    int Answer(CMD_DATA answer) const;

    /// @return all requests since the last look, in words, oldest first.
    Words TakeRequests();

    // Waiting

    /// Waits until a condition, looked at on the GUI thread, holds.
    testing::AssertionResult Await(const std::string& what, const std::function<bool()>& condition);

    /// Waits for as many requests as expected, and forgets them.
    testing::AssertionResult Requests(const Words& expected);

    /// Lets three further ticks pass. @return whether no request has come by then.
    testing::AssertionResult SendsNothing();
    void AwaitThreeTicks();

    /// Waits until the watch list reads so.
    testing::AssertionResult Shows(const Words& rows);

    /// Waits until these rows of the watch list are selected.
    testing::AssertionResult Selects(const std::vector<int>& rows);

    /// Waits until the frame has gone.
    testing::AssertionResult FrameGoes();

    /// Waits until keys go to the frame, which a dialog may have had in front of it.
    testing::AssertionResult FrameGetsKeyboard();

    // The operator at the window

    void Click(ControlId button);
    void ClickCell(int row, int column, XKey held = 0);
    void ClickTab(Page page);

    /// Clicks on the tab and waits until the page is selected.
    testing::AssertionResult ShowPage(Page page);
    void ChooseMenu(int id);
    void CloseFrame();

    /// Defines a variable with this address, and else the settings that the dialog opens with.
    void Define(const std::string& address);

    /// Clicks on the value cell of a row and waits until the cursor is on it.
    testing::AssertionResult ChooseValue(int row);

    /// GUI thread. @return what the open editor reads; "(closed)" when none is shown.
    static std::string Typed();

    /// Types into the value cell of a row and presses Enter.
    void EnterValue(int row, const std::string& value);

    // The operator at a dialog

    /// Waits until this dialog is the innermost one, on the screen, and has the keyboard.
    /// @param what as InWords() has it.
    testing::AssertionResult DialogOpens(const std::string& what);

    /// Clicks on a button of the innermost dialog: wxID_OK, wxID_CANCEL, wxID_YES, wxID_NO. Waits
    /// until the dialog is closed or another is open above it.
    void ClickInDialog(int button);

    /// Waits until a dialog opens, clicks on a button and waits until it is closed.
    testing::AssertionResult AnswerDialog(const std::string& what, int button);

    /// In an open file dialog: chooses a file and confirms.
    testing::AssertionResult EnterFile(const std::string& path);

    /// The same, and waits until the dialog is closed.
    testing::AssertionResult ChooseFile(const std::string& path);

    /// Waits until the open file dialog shows a dialog of its own.
    testing::AssertionResult FileDialogAsks();

    /// In an open settings dialog.
    void FocusCombo(ControlId combo);
    void ChooseInCombo(ControlId combo, int item);
    void ChooseInBox(ControlId box, int item);
    void TypeAddress(const std::string& address);

    TempDir files;
    RecordingHost host; ///< GUI thread.
    Watch watch;        ///< GUI thread.
    Operator hands;
    plchost::Plugin plugin;

private:
    /// Waits until nothing moves in the window any more.
    testing::AssertionResult AwaitStill();
    void ClickButton(int button);
    testing::AssertionResult AwaitDialogClosed(const wxDialog* dialog);

    std::map<std::string, std::string> m_settings;
};

/// @return the program debug file with these blocks, named "OB1", "OB2" and so on; steps count on.
std::string ProgramDebugFile(const std::vector<Words>& blocks);

/// An empty debugger, open.
class OpenDebugger : public DebuggerTest
{
protected:
    void SetUp() override { ASSERT_TRUE(Open()); }
};
